#include "records/PlanDirectory.h"

#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

#include <optional>

namespace tvrx {

namespace {

const QString kColumns = QStringLiteral(
    "BIN, PCN, PlanName, ShortName, PBM, Carrier, Version, States, Status, MaxScripts, RefSheet");

// What the pick list shows of each plan: its caption and the directory's column.
struct Shown {
    const char* caption;
    const char* column;
};
constexpr Shown kShown[] = {
    {"BIN", "BIN"}, {"PCN", "PCN"},         {"Plan name", "PlanName"}, {"Short name", "ShortName"},
    {"PBM", "PBM"}, {"Version", "Version"}, {"States", "States"},
};

DbConnection& lookupConnection() {
    if (!mdlMain::ConnectLookup() || !mdlMain::LookupConnection) fail(err::ObjectVariableNotSet);
    return *mdlMain::LookupConnection;
}

// A LIKE pattern that finds the text anywhere, its own % and _ taken literally.
QString containing(const QString& text) {
    QString escaped;
    for (const QChar c : text.toUpper()) {
        if (c == u'\\' || c == u'%' || c == u'_') escaped += u'\\';
        escaped += c;
    }
    return QLatin1Char('%') + escaped + QLatin1Char('%');
}

RecordSet searchDirectory(const QString& text) {
    const bool byBin = text.startsWith(QLatin1Char('#'));
    const QString column = byBin ? QStringLiteral("BIN") : QStringLiteral("PlanName");
    const QString part = conv::Trim(byBin ? text.mid(1) : text);
    return lookupConnection().OpenRecordSet(
        QStringLiteral("SELECT %1 FROM PlanDirectory WHERE UPPER(COALESCE(%2, '')) LIKE ? "
                       "ESCAPE '\\' ORDER BY %2, BIN, PCN")
            .arg(kColumns, column),
        {containing(part)});
}

std::optional<int> pickPlan(RecordSet& rs, const QString& text) {
    if (rs.RecordCount() == 0) {
        mdlMain::user().MsgBox(
            QStringLiteral("No plan in the plan directory matches \"%1\".").arg(text),
            Buttons::OKOnly, Icon::Information, 1, QStringLiteral("Plan Directory"));
        return std::nullopt;
    }
    QStringList captions;
    for (const Shown& shown : kShown) captions.append(QString::fromLatin1(shown.caption));
    QList<QStringList> rows;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        QStringList row;
        for (const Shown& shown : kShown)
            row.append(columns::textOf(rs.Fields(QString::fromLatin1(shown.column))));
        rows.append(row);
    }
    return mdlMain::user().PickRow(QStringLiteral("Plan Directory"), captions, rows);
}

// The plan on the current row of a directory query.
PlanEntry planOf(const RecordSet& rs) {
    using R = ReadForm;
    using W = WriteForm;
    using P = PlanEntry;
    static const ColumnTable<P> table(
        QStringLiteral("PlanDirectory"), QStringLiteral("BIN"),
        {
            {"BIN", member(&P::BIN), R::text(), W::none()},
            {"PCN", member(&P::ProcessorNumber), R::text(), W::none()},
            {"PlanName", member(&P::PlanName), R::text(), W::none()},
            {"ShortName", member(&P::ShortName), R::text(), W::none()},
            {"PBM", member(&P::PBM), R::text(), W::none()},
            {"Carrier", member(&P::Carrier), R::text(), W::none()},
            {"Version", member(&P::Version), R::text(), W::none()},
            {"States", member(&P::States), R::text(), W::none()},
            {"Status", member(&P::Status), R::text(), W::none()},
            {"MaxScripts", member(&P::MaxScripts),
             R::custom([](const QVariant& field) { return conv::Val(columns::textOf(field)); }),
             W::none()},
            {"RefSheet", member(&P::RefSheet), R::text(), W::none()},
        });
    PlanEntry plan;
    Frame frame("PlanLookup:Plan");
    table.read(frame, rs, plan);
    return plan;
}

}  // namespace

std::shared_ptr<PlanLookup> newPlanLookup() {
    std::shared_ptr<PlanLookup> lookup = mdlMain::PlanLookups.make<PlanDirectory>();
    if (!lookup) fail(err::ObjectVariableNotSet);
    return lookup;
}

void PlanDirectory::Search(const QString& sText, bool& found) {
    found = false;
    // A blank text (or a "#" alone) would list the whole directory: it finds nothing.
    const QString part = conv::Trim(sText.startsWith(QLatin1Char('#')) ? sText.mid(1) : sText);
    if (part.isEmpty()) return;
    RecordSet rs;
    std::optional<int> picked;
    Frame frame("PlanLookup:Search");
    frame([&] { rs = searchDirectory(sText); });
    frame([&] { picked = pickPlan(rs, sText); });
    frame([&] {
        if (!picked) return;
        rs.MoveFirst();
        for (int i = 0; i < *picked; ++i) rs.MoveNext();
        take(planOf(rs));
        found = true;
    });
}

void PlanDirectory::SearchBinAndProcessor(const QString& sBIN, const QString& sProcessor,
                                          bool& found) {
    found = false;
    RecordSet rs;
    Frame frame("PlanLookup:SearchBinAndProcessor");
    frame([&] {
        DbConnection& connection = lookupConnection();
        const Dialect& dialect = connection.dialect();
        rs = connection.OpenRecordSet(
            QStringLiteral("SELECT %1 FROM PlanDirectory WHERE %2 AND %3")
                .arg(kColumns, dialect.textEquals(QStringLiteral("COALESCE(BIN, '')")),
                     dialect.textEquals(QStringLiteral("COALESCE(PCN, '')"))),
            {sBIN, sProcessor});
    });
    frame([&] {
        if (rs.Eof()) return;
        take(planOf(rs));
        found = true;
    });
}

}  // namespace tvrx
