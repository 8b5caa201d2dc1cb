#include "prescription/Wantbook.h"
#include "prescription/clsPrescription.h"

#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <optional>

namespace tvrx {

namespace wantbook {

qint32 packagesToOrder(double parQty, double stock, double packageSize) {
    const qint32 divisor = conv::LongFromDouble(packageSize == 0 ? 1 : packageSize);
    const qint32 shortfall = conv::LongFromDouble(parQty - stock);
    if (divisor == 0) fail(err::DivisionByZero);
    const qint32 packages = shortfall / divisor;
    return packages == 0 ? 1 : packages;
}

}  // namespace wantbook

namespace {

const QString kDrugStock = QStringLiteral("DrugStockByID");
// The movement is made on the server in one statement, so two workstations selling the
// same drug at the same moment both count; a drug whose stock was never counted (null)
// stays uncounted.
const QString kMoveStock =
    QStringLiteral("UPDATE DRUG SET Stock = Stock + ? WHERE DrugID = ? RETURNING Stock");
const QString kWantLine = QStringLiteral("WantbookAdjust");

void sayConnectionTimedOut() {
    mdlMain::user().MsgBox(
        QStringLiteral("It appears that your data connection has timed out. We recommend "
                       "closing Tessivar and") +
            QStringLiteral("\r\n") +
            QStringLiteral("reopening to avoid more errors of this type. "),
        Buttons::OKOnly, Icon::Information, 1, appConfig().Title);
}

double orZero(const RecordSet& rs, const char* name) {
    return conv::ToDouble(mdlMain::ScreenForNull(rs.Fields(QString::fromLatin1(name)), 0));
}

QDateTime today() {
    return mdlMain::clock().now().date().startOfDay();
}

void closeIfOpen(RecordSet& rs) {
    if (rs.State() == 1) rs.Close();
}

// The drug's one line on the want list: written with the packages to order, or removed
// when there are none to order.
void keepWantLine(Frame& frame, Catalogue& catalogue, qint32 drugId,
                  std::optional<qint32> packages) {
    RecordSet* line = nullptr;
    frame([&] {
        line = &catalogue.rs(kWantLine);
        closeIfOpen(*line);
        catalogue.Run(kWantLine, {drugId});
    });
    frame([&] {
        if (!line || line->State() == 0) return;
        if (!packages) {
            if (!line->Eof()) line->Delete();
            return;
        }
        if (line->Eof()) {
            line->AddNew();
            line->setField(QStringLiteral("DrugID"), drugId);
        }
        line->setField(QStringLiteral("OrderQty"), *packages);
        line->setField(QStringLiteral("Date"), today());
        line->Update();
    });
    frame([&] {
        if (line) closeIfOpen(*line);
    });
}

}  // namespace

// Moves the stock of the fill's drug by the two quantities and keeps the drug's line on
// the want list: a tracked drug below its reorder point has one line ordering the packages
// up to par; a drug at or above it has none.
void clsPrescription::AdjustWantbook(double adjustQty, double previousQty) {
    Frame frame("clsPrescription:AdjustWantbook");
    frame.on(err::LostLink, OnFailure::BoxAndContinue, sayConnectionTimedOut);
    Catalogue& catalogue = mdlMain::catalogue();
    RecordSet* drug = nullptr;
    frame([&] {
        drug = &catalogue.rs(kDrugStock);
        closeIfOpen(*drug);
        catalogue.Run(kDrugStock, {DrugID()});
    });
    bool tracked = false;
    frame([&] {
        tracked = drug && drug->State() == 1 && !drug->Eof() && orZero(*drug, "MinReorderQty") > 0;
    });
    if (tracked) {
        QVariant stock;
        const double reorderPoint = orZero(*drug, "MinReorderQty");
        frame([&] {
            stock =
                records::mainConnection().Scalar(kMoveStock, {previousQty + adjustQty, DrugID()});
        });
        // A stock never counted compares as not below, as the want list always read it.
        const bool below = !stock.isNull() && conv::ToDouble(stock) < reorderPoint;
        std::optional<qint32> packages;
        if (below) {
            frame([&] {
                packages = wantbook::packagesToOrder(orZero(*drug, "ParQty"), conv::ToDouble(stock),
                                                     orZero(*drug, "PackageSize"));
            });
            if (!packages) packages = 0;
        }
        keepWantLine(frame, catalogue, DrugID(), packages);
    }
    frame([&] {
        if (drug) closeIfOpen(*drug);
    });
}

}  // namespace tvrx
