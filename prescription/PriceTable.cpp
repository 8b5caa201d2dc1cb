#include "prescription/PriceTable.h"

#include "session/data/DbConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

namespace tvrx::mdlMain {

namespace {

// Where a source keeps its tables: the key table, the band table, and the key row's
// column that chooses the cost as the base when it holds costValue.
struct PriceSource {
    QString keyTable;
    QString bandTable;
    QString baseColumn;
    double costValue;
};

// The pharmacy's database prices from the cost when UseCost is true (-1); the alternate
// source when its AWP column is 0.
const PriceSource kPharmacy{QStringLiteral("PriceTable"), QStringLiteral("PriceTableInfo"),
                            QStringLiteral("UseCost"), -1};
const PriceSource kAlternate{QStringLiteral("PriceTableKey"), QStringLiteral("PriceTable"),
                             QStringLiteral("AWP"), 0};

const PriceSource& source() {
    return UseAlternateSource ? kAlternate : kPharmacy;
}

DbConnection& sourceConnection() {
    const std::shared_ptr<DbConnection>& connection =
        UseAlternateSource ? AlternateConnection : MainConnection;
    if (!connection) fail(err::ObjectVariableNotSet);
    return *connection;
}

// Shown before the report, so that the pharmacy sends what support needs to find the fill.
void showNoTableBox() {
    user().MsgBox(QStringLiteral("To assist in determining the cause of this error please fill in "
                                 "the comments on the following error screen with\r\n"
                                 "Patient Name, Drug Name and Insurance company. Then click on "
                                 "Send Error. Please contact us when you\r\n"
                                 "have time for us to remote in and look at the different "
                                 "properties of this prescription. Thank you."),
                  Buttons::OKOnly, Icon::Information, 1, appConfig().Title);
}

void reportNoTable() {
    reportFailure(QStringLiteral("Error getting price table"), 200, QStringLiteral("Debug"), 40,
                  QStringLiteral("TVRX1.mdlMain.GetPrice"));
}

void showNotFoundBox() {
    user().MsgBox(QStringLiteral("Price table not found or no break points entered"),
                  Buttons::OKOnly, Icon::Critical, 1, appConfig().ProductName);
}

// A flag of the key row compared as the platform compared it: a null equals nothing.
bool holds(const QVariant& field, double value) {
    return !field.isNull() && conv::ToDouble(field) == value;
}

double field(const RecordSet& rs, const char* name) {
    return conv::ToDouble(rs.Fields(QString::fromLatin1(name)));
}

// The break point is only shown: a band without one still prices.
PriceBand bandAt(const RecordSet& bands, double from, bool last) {
    return {from, conv::ToDouble(ScreenForNull(bands.Fields(QStringLiteral("BreakPoint")), 0)),
            field(bands, "MarkUpMultiplier"), field(bands, "MarkUpAddend"), last};
}

}  // namespace

double GetPrice(qint32& lPT, double dAWP, double dCost, double& dAddend, qint32 lDefaultPT,
                double dQty, PriceBand* used) {
    double price = 0;
    Frame frame("mdlMain:GetPrice");
    // An operation on a closed result is passed over in silence.
    frame.on(err::ObjectClosed, OnFailure::ContinueSilently);
    if (lPT < 1) lPT = lDefaultPT;
    if (lPT <= 0) {
        frame(showNoTableBox);
        reportNoTable();
        return 0;
    }
    const PriceSource& tables = source();
    RecordSet key;
    RecordSet bands;
    frame([&] {
        key = sourceConnection().OpenRecordSet(
            QStringLiteral("SELECT * FROM %1 WHERE PriceTableID = ?").arg(tables.keyTable), {lPT});
    });
    // A band without a break point comes first, as the pharmacy's server sorts it, on
    // every database.
    frame([&] {
        bands = sourceConnection().OpenRecordSet(
            QStringLiteral(
                "SELECT * FROM %1 WHERE PriceTableID = ? ORDER BY BreakPoint NULLS FIRST")
                .arg(tables.bandTable),
            {lPT});
    });
    double base = 0;
    frame([&] {
        if (key.Eof()) return;
        base = holds(key.Fields(tables.baseColumn), tables.costValue) ? dCost : dAWP;
    });
    // A test that fails resumes inside its block: the box, and no price.
    bool missing = true;
    frame([&] { missing = key.Eof() || bands.Eof(); });
    if (missing) {
        frame(showNotFoundBox);
        return 0;
    }
    bool byQuantity = false;
    frame([&] {
        byQuantity = !holds(ScreenForNull(key.Fields(QStringLiteral("BreakOnQty")), 0), 0);
    });
    const double value = byQuantity ? dQty : base;
    // Every band is looked at, so where bands overlap the last that holds the value wins.
    PriceBand taken;
    double previous = 0;
    double lastFrom = 0;
    bool found = false;
    for (;;) {
        bool more = false;
        frame([&] { more = !bands.Eof(); });
        if (!more) break;
        frame([&] {
            lastFrom = previous;
            const double breakPoint = field(bands, "BreakPoint");
            if (value >= previous && value < breakPoint) {
                taken = bandAt(bands, previous, false);
                price = base * taken.multiplier + taken.addend;
                dAddend = taken.addend;
                found = true;
            }
            previous = breakPoint;
        });
        frame([&] { bands.MoveNext(); });
    }
    if (!found) {
        frame([&] {
            bands.MoveLast();
            taken = bandAt(bands, lastFrom, true);
            price = base * taken.multiplier + taken.addend;
            dAddend = taken.addend;
        });
    }
    if (used) *used = taken;
    frame([&] { key.Close(); });
    frame([&] { bands.Close(); });
    return price;
}

}  // namespace tvrx::mdlMain
