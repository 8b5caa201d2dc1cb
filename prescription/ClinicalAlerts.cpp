#include "prescription/ClinicalScreening.h"
#include "prescription/InteractionReport.h"
#include "prescription/clsPrescription.h"
#include "records/clsDrug.h"
#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/RecordSet.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

// The latest fill of each prescription number in the period.
const QString kLatestFills = QStringLiteral(
    "SELECT RxInfoID, Date, RefillNumber, Number, DNDC FROM RXINFO XX "
    "WHERE RefillNumber = (SELECT MAX(RefillNumber) FROM RXINFO WHERE Number = XX.Number) "
    "AND PatientID = ? AND Date >= ? AND Date <= ?");

// Every fill in the period, voided and deleted ones too.
const QString kAllFills = QStringLiteral(
    "SELECT RXINFO.RxInfoID, RXINFO.Date, RXINFO.Number, DRUG.Name, DRUG.GCN, DRUG.NDC, "
    "RXINFO.DNDC FROM RXINFO LEFT OUTER JOIN DRUG ON RXINFO.DrugID = DRUG.DrugID "
    "WHERE RXINFO.PatientID = ? AND RXINFO.Date >= ? AND RXINFO.Date <= ?");

const QString kAllergies = QStringLiteral("SELECT Code, Allergies FROM PATALL WHERE PatientID = ?");

// An NDC as the screens take it: trimmed, without hyphens.
QString digitsOf(const QString& ndc) {
    return conv::Trim(ndc).remove(u'-');
}

QString fieldText(const RecordSet& rs, const QString& name) {
    return columns::textOf(rs.Fields(name));
}

template <class Screen>
Screen& required(const std::shared_ptr<Screen>& screen) {
    if (!screen) fail(err::ObjectVariableNotSet);
    return *screen;
}

// Runs the step for each row; a failed test for the end stops the walk.
void forEachRow(Frame& frame, RecordSet& rs, const std::function<void()>& step) {
    frame([&] { rs.MoveFirst(); });
    for (;;) {
        bool more = false;
        frame([&] { more = !rs.Eof(); });
        if (!more) return;
        step();
        bool moved = false;
        frame([&] {
            rs.MoveNext();
            moved = true;
        });
        if (!moved) return;
    }
}

// A failed count carries on into the early exit, as a failed test of the condition does.
bool noRows(Frame& frame, const RecordSet& rs) {
    bool empty = true;
    frame([&] { empty = rs.RecordCount() == 0; });
    return empty;
}

}  // namespace

// A fill that was sent to a payer carries the NDC it was sent with; one that was not yet
// takes its drug's.
QString clsPrescription::currentNdc() {
    return digitsOf(LogID > 0 ? DNDC : DrugClass()->NDC);
}

bool clsPrescription::Interactions() {
    Frame frame("clsPrescription:Interactions");
    RecordSet rs;
    std::shared_ptr<InteractionScreen> screen;
    frame([&] {
        // The period runs from midnight ITXLookBack days ago to midnight tomorrow.
        const QDate today = mdlMain::clock().now().date();
        const QDateTime start = today.addDays(-ITXLookBack).startOfDay();
        const QDateTime end = today.addDays(1).startOfDay();
        rs = records::mainConnection().OpenRecordSet(OneFill != 0 ? kLatestFills : kAllFills,
                                                     {PatientID(), start, end});
    });
    if (noRows(frame, rs)) return false;
    QString ndc;
    frame([&] { ndc = currentNdc(); });
    forEachRow(frame, rs, [&] {
        QString heading;
        QString otherNdc;
        frame([&] { otherNdc = digitsOf(fieldText(rs, QStringLiteral("DNDC"))); });
        frame([&] {
            heading = QStringLiteral("INTERACTION FOUND FOR RX ") +
                      fieldText(rs, QStringLiteral("Number")) + QStringLiteral(" FILLED ON ") +
                      fieldText(rs, QStringLiteral("Date"));
        });
        frame([&] {
            if (!screen) screen = createInteractionScreen();
        });
        frame([&] { required(screen).Submit(ndc, otherNdc, heading); });
    });
    qint32 count = 0;
    frame([&] { count = required(screen).Count(); });
    for (qint32 index = 1; index <= count; ++index) {
        frame([&] { printInteractionReport(required(screen).Item(index), PrintDevice); });
    }
    return false;
}

bool clsPrescription::Allergies() {
    Frame frame("clsPrescription:Allergies");
    RecordSet rs;
    std::shared_ptr<AllergyScreen> screen;
    frame([&] { rs = records::mainConnection().OpenRecordSet(kAllergies, {PatientID()}); });
    if (noRows(frame, rs)) return false;
    QString ndc;
    frame([&] { ndc = currentNdc(); });
    forEachRow(frame, rs, [&] {
        QString code;
        QString allergies;
        frame([&] { code = fieldText(rs, QStringLiteral("Code")); });
        frame([&] { allergies = fieldText(rs, QStringLiteral("Allergies")); });
        frame([&] {
            if (!screen) screen = createAllergyScreen();
        });
        frame([&] { required(screen).Submit(code, allergies, ndc, Drug); });
        frame([&] { required(screen).Check(); });
    });
    qint32 count = 0;
    frame([&] { count = required(screen).Count(); });
    for (qint32 index = 1; index <= count; ++index) {
        frame([&] {
            mdlMain::user().MsgBox(required(screen).Item(index).text(), Buttons::OKOnly,
                                   Icon::Critical, 1, QStringLiteral("PATIENT ALLERGY ALERT"));
        });
    }
    return false;
}

}  // namespace tvrx
