#include "prescription/RefillDialogs.h"
#include "prescription/clsPrescription.h"

#include "records/clsDrug.h"
#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"
#include "session/text/DateDiff.h"
#include "session/text/Encodings.h"

#include <functional>
#include <optional>

namespace tvrx {

namespace {

using refill::Choice;
using refill::ChoiceDialog;

constexpr qint16 kFilled = -1;
constexpr qint16 kNotFilled = 0;
constexpr qint16 kPrintCallDoctor = 10;
constexpr qint16 kFaxDoctor = 11;

// Every live fill of the number, the last being the one a refill copies, voided or not. A
// fill without a refill number sorts first, as the pharmacy's server sorts it, on every
// database.
const QString kFills = QStringLiteral(
    "SELECT * FROM RXINFO WHERE Number = ? AND (Deleted = 0 OR Deleted IS NULL) "
    "ORDER BY RefillNumber NULLS FIRST");
const QString kGeneratedFrom = QStringLiteral("SELECT * FROM RXINFO WHERE GeneratedRx = ?");
// The fills that count against the refill rules: neither voided nor deleted.
const QString kCountingFills = QStringLiteral(
    "SELECT RxInfoID, DrugID, Number, RefillNumber, Date, DS, Voided, Transferred, Schedule, "
    "OriginalDate FROM RXINFO WHERE (Number = ?) AND (Voided = 0) AND (Deleted = 0 OR Deleted "
    "IS NULL) ORDER BY RefillNumber NULLS FIRST");
const QString kOriginal = QStringLiteral(
    "SELECT OriginalDate, Date, Schedule FROM RXINFO WHERE (Number = ?) AND RefillNumber = 0");
const QString kIngredients = QStringLiteral("SELECT * FROM Ingredients WHERE RxInfoID = ?");
const QString kAddIngredient = QStringLiteral(
    "INSERT INTO Ingredients (RxInfoID, NAME, NDC, CostBasis, Qty, Cost, HCPC) "
    "VALUES (?, ?, ?, ?, ?, ?, ?)");

QVariant column(const RecordSet& rs, const char* name) {
    return rs.Fields(QString::fromLatin1(name));
}

// A column followed by an empty text: a null reads as the empty text.
QString text(const RecordSet& rs, const char* name) {
    const QVariant value = column(rs, name);
    return value.isNull() ? QString() : value.toString();
}

// A column into a text variable: a null fails with 94.
QString strictText(const RecordSet& rs, const char* name) {
    const QVariant value = column(rs, name);
    if (value.isNull()) fail(err::InvalidUseOfNull);
    return value.toString();
}

QVariant orZero(const RecordSet& rs, const char* name) {
    return mdlMain::ScreenForNull(column(rs, name), 0);
}

// The text "0" followed by the column, converted: a null reads 0.
QVariant zeroText(const RecordSet& rs, const char* name) {
    return QStringLiteral("0") + text(rs, name);
}

// A comparison with a column as the platform made it: a null compares as not true.
bool above(const QVariant& value, double limit) {
    return !value.isNull() && conv::ToDouble(value) > limit;
}

bool equals(const QVariant& value, double other) {
    return !value.isNull() && conv::ToDouble(value) == other;
}

// Whole quantities divided with the remainder dropped; a divisor that rounds to 0 fails
// with 11.
qint32 wholeFills(double quantity, double perFill) {
    const qint32 divisor = conv::LongFromDouble(perFill);
    const qint32 dividend = conv::LongFromDouble(quantity);
    if (divisor == 0) fail(err::DivisionByZero);
    return dividend / divisor;
}

qint32 runForNumber(const char* command, const QVariantList& params = {}) {
    Catalogue& catalogue = mdlMain::catalogue();
    const QString name = QString::fromLatin1(command);
    catalogue.Run(name, params);
    return conv::ToLong(catalogue.returnValue(name));
}

QDateTime today() {
    return mdlMain::clock().now().date().startOfDay();
}

// One run of the refill rules over one prescription number.
class RefillRun {
public:
    RefillRun(clsPrescription& rx, qint32 rphId, qint32 startNumber, qint32& number,
              qint32 patientId, qint32 techId, bool controlIIOverride)
        : rx_(rx),
          rphId_(rphId),
          startNumber_(startNumber),
          number_(number),
          patientId_(patientId),
          techId_(techId),
          override_(controlIIOverride) {}

    qint16 run();

private:
    bool findFills();
    bool followsNewerNumber();
    bool forThisPatient();
    std::optional<qint16> checkLastCountingFill();
    std::optional<QString> expiry();
    QString controlledExpiry(const RecordSet& original, bool& expired);
    std::optional<qint16> act(Choice choice, bool addingUsesOne);
    void takeLastFill();
    bool addRefills(bool thisFillUsesOne);
    void generateNumber();
    qint16 createFill();
    QVariantList refillValues() const;
    void copyFromLastFill();
    void copyIngredients();

    // A test whose step fails resumes inside its block, as the original handler did.
    bool test(const std::function<bool()>& condition) {
        bool holds = true;
        frame_([&] { holds = condition(); });
        return holds;
    }
    // A date comparison that fails counts as not true.
    bool dateTest(const std::function<bool()>& condition) {
        bool holds = false;
        frame_([&] { holds = condition(); });
        return holds;
    }

    clsPrescription& rx_;
    const qint32 rphId_;
    const qint32 startNumber_;
    qint32& number_;
    const qint32 patientId_;
    const qint32 techId_;
    const bool override_;
    Frame frame_{"clsPrescription:RefillPrescription"};

    RecordSet fills_;          // every live fill, positioned on the last
    RecordSet countingFills_;  // neither voided nor deleted
    QDateTime originalDate_ = conv::ZeroDate();
    QString schedule_;
    double fillQty_ = 0;
    double qtyRemain_ = 0;
    double remainAfter_ = 0;
    double refillsAfter_ = 0;
    qint32 newRefill_ = 0;
    qint32 lastRxInfoId_ = 0;
    bool newNumber_ = false;
};

qint16 RefillRun::run() {
    if (number_ <= 0) return kNotFilled;
    if (!findFills()) return kNotFilled;
    if (!forThisPatient()) return kNotFilled;
    frame_([&] {
        countingFills_ = records::mainConnection().OpenRecordSet(kCountingFills, {number_});
    });
    if (test([&] { return countingFills_.RecordCount() > 0; })) {
        if (const auto refused = checkLastCountingFill()) return *refused;
    }
    if (const auto message = expiry()) {
        // Only a new number fills an expired prescription: the last fill's quantity, and
        // no ingredients.
        const Choice choice =
            refill::choose(ChoiceDialog::Expired, refill::expiredTitle(number_), *message);
        if (const auto ended = act(choice, false)) return *ended;
        frame_([&] { fillQty_ = conv::ToDouble(orZero(fills_, "Qty")); });
        frame_([&] { countingFills_.Close(); });
        return createFill();
    }
    frame_([&] { countingFills_.Close(); });
    takeLastFill();
    if (fillQty_ > 0) frame_([&] { refillsAfter_ = wholeFills(remainAfter_, fillQty_); });
    frame_([&] { newRefill_ = runForNumber("dbo_MaxRefill", {number_}) + 1; });
    if (qtyRemain_ <= 0) {
        const Choice choice = refill::choose(ChoiceDialog::NoRefillsLeft, refill::kRefillOptions,
                                             refill::noRefillsLeft());
        if (const auto ended = act(choice, true)) return *ended;
    }
    if (remainAfter_ < 0) {
        const Choice choice = refill::choose(ChoiceDialog::LessThanOneFill, refill::kRefillOptions,
                                             refill::lessThanOneFill(qtyRemain_));
        if (const auto ended = act(choice, false)) return *ended;
    }
    return createFill();
}

// The live fills of the number, after following the newer numbers the user chose to
// follow, one link at a time. False when there are none.
bool RefillRun::findFills() {
    for (;;) {
        frame_([&] { fills_ = records::mainConnection().OpenRecordSet(kFills, {number_}); });
        if (test([&] { return fills_.Eof(); })) {
            refill::sayNotFound(number_);
            return false;
        }
        frame_([&] {
            originalDate_ = conv::ToDate(mdlMain::ScreenForNull(column(fills_, "OriginalDate"), 0));
        });
        if (!followsNewerNumber()) break;
    }
    frame_([&] { fills_.MoveLast(); });
    return true;
}

bool RefillRun::followsNewerNumber() {
    RecordSet generated;
    frame_([&] { generated = records::mainConnection().OpenRecordSet(kGeneratedFrom, {number_}); });
    if (!test([&] { return !generated.Eof(); })) return false;
    bool follow = false;
    frame_([&] {
        const qint32 newer = conv::ToLong(column(generated, "Number"));
        follow = refill::followNewerNumber(number_, QString::number(newer));
        if (follow) number_ = newer;
    });
    return follow;
}

bool RefillRun::forThisPatient() {
    if (patientId_ <= 0) return true;
    if (!test([&] {
            const QVariant patient = column(fills_, "PatientID");
            return !patient.isNull() && conv::ToDouble(patient) != patientId_;
        })) {
        return true;
    }
    refill::sayOtherPatient(number_);
    return false;
}

// The latest fill that counts sets the drug and the schedule, and must not be transferred,
// filled today or filled less than three quarters of its days supply ago, unless the user
// fills anyway.
std::optional<qint16> RefillRun::checkLastCountingFill() {
    RecordSet& last = countingFills_;
    frame_([&] { last.MoveLast(); });
    frame_([&] { rx_.setDrugID(conv::ToLong(column(last, "DrugID"))); });
    frame_([&] {
        schedule_ = above(column(last, "DrugID"), 0) ? rx_.DrugClass()->Schedule
                                                     : strictText(last, "Schedule");
    });
    if (test([&] { return equals(column(last, "Transferred"), -1); })) {
        refill::sayTransferred(number_);
        return kNotFilled;
    }
    const QDateTime now = mdlMain::clock().now();
    const QString picture = QStringLiteral("MM/DD/YY");
    if (test([&] {
            return conv::FormatDateOrEmpty(column(last, "Date"), picture) ==
                   conv::FormatDate(now, picture);
        })) {
        if (!refill::fillAgainToday(number_, now)) return kNotFilled;
    }
    if (dateTest([&] {
            const double daysPassed =
                double(conv::DateDiff(conv::DateInterval::Day, column(last, "Date"), now));
            const double threshold =
                conv::Val(
                    mdlMain::ScreenForNull(column(last, "DS"), QStringLiteral("0")).toString()) *
                0.75;
            return daysPassed < threshold;
        })) {
        QString lastFilled;
        frame_([&] { lastFilled = conv::FormatDateOrEmpty(column(last, "Date"), picture); });
        if (!refill::fillBeforeThreeQuarters(lastFilled)) return kNotFilled;
    }
    return std::nullopt;
}

// The message that expires the prescription, or none: schedule 2 is never refilled,
// schedules 3 to 5 expire after five refills or six months, everything else after a year.
// The override of controlled-substance rules leaves only the year.
std::optional<QString> RefillRun::expiry() {
    RecordSet original;
    frame_([&] { original = records::mainConnection().OpenRecordSet(kOriginal, {number_}); });
    frame_([&] { original.MoveFirst(); });
    frame_([&] {
        if (conv::Trim(schedule_).isEmpty()) schedule_ = text(original, "Schedule");
    });
    bool expired = false;
    QString message;
    const bool controlled = schedule_ == QLatin1String("3") || schedule_ == QLatin1String("4") ||
                            schedule_ == QLatin1String("5");
    if (schedule_ == QLatin1String("2") && !override_) {
        expired = true;
        message = refill::scheduleTwoExpired();
    } else if (controlled && !override_) {
        message = controlledExpiry(original, expired);
    } else {
        const QDateTime now = mdlMain::clock().now();
        if (dateTest([&] {
                return conv::DateDiff(conv::DateInterval::Day, column(original, "OriginalDate"),
                                      now) > 365;
            })) {
            expired = true;
            frame_([&] {
                message = refill::expiredSince(
                    refill::kYearElapsed, conv::FormatDateOrEmpty(column(original, "OriginalDate"),
                                                                  QStringLiteral("MM-DD-YY")));
            });
        }
    }
    frame_([&] { original.Close(); });
    if (!expired) return std::nullopt;
    return message;
}

QString RefillRun::controlledExpiry(const RecordSet& original, bool& expired) {
    const QDateTime now = mdlMain::clock().now();
    QString reason;
    if (test([&] { return countingFills_.RecordCount() >= 6; })) {
        reason = refill::kFiveRefillsIssued;
    } else if (dateTest([&] {
                   return conv::DateDiff(conv::DateInterval::Month,
                                         column(original, "OriginalDate"), now) > 6;
               }) ||
               dateTest([&] {
                   const QVariant date = column(original, "OriginalDate");
                   return conv::DateDiff(conv::DateInterval::Month, date, now) == 6 &&
                          now.date().day() > conv::ToDate(date).date().day();
               })) {
        reason = refill::kSixMonthsElapsed;
    }
    if (reason.isEmpty()) return {};
    expired = true;
    QString message;
    frame_([&] {
        message = refill::expiredSince(
            reason,
            conv::FormatDateOrEmpty(column(original, "OriginalDate"), QStringLiteral("MM-DD-YY")));
    });
    return message;
}

// What a button of a choice dialog does: the code to end with, or none to go on and fill.
std::optional<qint16> RefillRun::act(Choice choice, bool addingUsesOne) {
    switch (choice) {
        case Choice::FaxDoctor:
            return kFaxDoctor;
        case Choice::PrintCallDoctor:
            return kPrintCallDoctor;
        case Choice::AddRefills:
            if (!addRefills(addingUsesOne)) return kNotFilled;
            return std::nullopt;
        case Choice::GenerateNewRx:
            generateNumber();
            return std::nullopt;
        case Choice::RefillWithQuantity:
            fillQty_ = qtyRemain_;
            remainAfter_ = 0;
            refillsAfter_ = 0;
            return std::nullopt;
        case Choice::Stop:
            break;
    }
    return kNotFilled;
}

// The last fill's quantity and what remains after this fill: the whole fills of that are
// the refills left after it.
void RefillRun::takeLastFill() {
    frame_([&] { lastRxInfoId_ = conv::ToLong(zeroText(fills_, "RXInfoID")); });
    frame_([&] { fillQty_ = conv::ToDouble(orZero(fills_, "Qty")); });
    frame_([&] { qtyRemain_ = conv::ToDouble(orZero(fills_, "QtyRemain")); });
    remainAfter_ = qtyRemain_ - fillQty_;
}

// The refills the user adds replace the counters, at most 99. When the prescription had
// none left, the fill being made uses one of them; when less than one fill remained, it
// does not. False when the answer is no number above 0.
bool RefillRun::addRefills(bool thisFillUsesOne) {
    const QString answer = refill::askRefillsToAdd();
    qint16 added = 0;
    frame_([&] { added = conv::IntegerFromDouble(conv::LongFromDouble(conv::Val(answer))); });
    if (added <= 0) return false;
    if (thisFillUsesOne) --added;
    if (added > 99) added = 99;
    refillsAfter_ = added;
    remainAfter_ = added * fillQty_;
    if (thisFillUsesOne && remainAfter_ < 0) remainAfter_ = 0;
    return true;
}

// A new prescription number for this fill: the next after the highest, or the host's
// first number if that is higher. It starts as an original without refills.
void RefillRun::generateNumber() {
    frame_([&] { number_ = runForNumber("dbo_MaxRxNumber") + 1; });
    if (number_ < startNumber_) number_ = startNumber_;
    newRefill_ = 0;
    remainAfter_ = 0;
    refillsAfter_ = 0;
    newNumber_ = true;
}

// Stores the new fill and loads it. When it cannot be stored (the unique rule on live
// fills among other reasons) the run ends at once: going on would load the fill the
// object held before and overwrite it.
qint16 RefillRun::createFill() {
    qint32 newId = 0;
    const int failuresBefore = frame_.failures();
    frame_([&] {
        const Procedures::Result created = Procedures::call(
            records::mainConnection(), QStringLiteral("dbo.NewRefill"), refillValues());
        newId = conv::ToLong(created.ReturnValue);
    });
    if (frame_.failures() > failuresBefore) return kNotFilled;
    rx_.PrescriptionType = RefillRx;
    rx_.RXInfoID = newId;
    rx_.GetData();
    rx_.OriginalDate = newNumber_ ? today() : originalDate_;
    copyFromLastFill();
    copyIngredients();
    return kFilled;
}

// The values of the new row, in NewRefill's order, taken from the last live fill.
QVariantList RefillRun::refillValues() const {
    const RecordSet& last = fills_;
    const QVariant compound = column(last, "Compound");
    return {number_,
            newRefill_,
            orZero(last, "PatientID"),
            mdlMain::ScreenForNull(column(last, "Patient")),
            orZero(last, "PatInsID"),
            orZero(last, "MDID"),
            column(last, "Doctor"),
            column(last, "Drug"),
            orZero(last, "DrugID"),
            !compound.isNull() && conv::ToDouble(compound) != 0,
            fillQty_,
            refillsAfter_,
            remainAfter_,
            orZero(last, "Cost"),
            orZero(last, "Price"),
            orZero(last, "Copay"),
            column(last, "SIG"),
            mdlMain::clock().now(),
            orZero(last, "LogID"),
            column(last, "DS"),
            rphId_,
            techId_,
            orZero(last, "PriceTableID"),
            column(last, "SigCodes"),
            column(last, "Schedule")};
}

// What the new fill keeps of the last one in memory, for the caller's Update; the other
// payer's result of the last fill does not carry over.
void RefillRun::copyFromLastFill() {
    const RecordSet& last = fills_;
    const std::pair<const char*, QString clsPrescription::*> texts[] = {
        {"Diagnosis", &clsPrescription::Diagnosis},
        {"HCPC", &clsPrescription::HCPC},
        {"DAWField", &clsPrescription::DAWField},
        {"OtherDenial", &clsPrescription::OtherDenial},
        {"DURData", &clsPrescription::DURData},
        {"EligibilityCode", &clsPrescription::EligibilityCode},
        {"OtherInsCode", &clsPrescription::OtherInsCode},
        {"OriginCode", &clsPrescription::OriginCode},
        {"LevelOfService", &clsPrescription::LevelOfService},
        {"Units", &clsPrescription::Units},
        {"InsData", &clsPrescription::InsData},
        {"Notes", &clsPrescription::Notes},
    };
    for (const auto& copied : texts) frame_([&] { rx_.*copied.second = text(last, copied.first); });
    frame_([&] { rx_.FormulaID = conv::ToInteger(zeroText(last, "FormulaID")); });
    frame_([&] { rx_.DNDC = text(last, "DNDC"); });
    rx_.Tech = techId_;
    frame_([&] { rx_.OPatInsID = conv::ToLong(zeroText(last, "OPatInsID")); });
    rx_.OInsPaid = 0;
    rx_.OInsAmount = 0;
    rx_.OInsCopay = 0;
    rx_.PInsAmount = 0;
    rx_.PInsCopay = 0;
    rx_.OOnlineResult.clear();
    rx_.OAuthCode.clear();
    frame_([&] { rx_.OtherCoverage = text(last, "OtherCoverage"); });
    frame_([&] { rx_.OtherType = text(last, "OtherType"); });
    frame_([&] { rx_.PaidQualifier = text(last, "PaidQualifier"); });
    rx_.OtherDate = today();
    frame_([&] { rx_.MetricQty = conv::ToDouble(zeroText(last, "MetricQty")); });
}

// The last fill's compound ingredients go with the new fill, each as it was typed; one
// without a quantity or a cost is reported and left behind.
void RefillRun::copyIngredients() {
    RecordSet ingredients;
    frame_([&] {
        ingredients = records::mainConnection().OpenRecordSet(kIngredients, {lastRxInfoId_});
    });
    for (;;) {
        bool more = false;
        frame_([&] { more = !ingredients.Eof(); });
        if (!more) break;
        frame_([&] {
            const QVariant quantity = column(ingredients, "Qty");
            const QVariant cost = column(ingredients, "Cost");
            if (quantity.isNull() || cost.isNull()) {
                fail(err::StatementError,
                     QStringLiteral("The ingredient %1 has no quantity or no cost; not copied.")
                         .arg(text(ingredients, "NAME")));
            }
            records::mainConnection().Execute(
                kAddIngredient,
                {rx_.RXInfoID, conv::Trim(text(ingredients, "NAME")), text(ingredients, "NDC"),
                 text(ingredients, "CostBasis"), quantity, cost, text(ingredients, "HCPC")});
        });
        frame_([&] { ingredients.MoveNext(); });
    }
    frame_([&] { ingredients.Close(); });
}

}  // namespace

qint16 clsPrescription::RefillPrescription(qint32 RPhID, qint32 StartNumber, qint32& lRxNumber,
                                           qint32 lPatientID, qint32 TechID,
                                           bool ControlIIOveride) {
    return RefillRun(*this, RPhID, StartNumber, lRxNumber, lPatientID, TechID, ControlIIOveride)
        .run();
}

}  // namespace tvrx
