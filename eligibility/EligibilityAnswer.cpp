// clsPatient::ParseClaimFile: a payer's answer to an eligibility request, drawn as the
// eligibility report, and the plans its message names checked against the pharmacy's.
#include "eligibility/PatientCoverage.h"
#include "eligibility/frmEligibility.h"
#include "records/PlanLookup.h"
#include "records/clsINSURANCE.h"
#include "records/clsPatient.h"
#include "responses/FieldReader.h"
#include "responses/RejectTable.h"
#include "responses/ResponseFile.h"
#include "responses/ResponseLayout.h"
#include "responses/TextPositions.h"
#include "session/data/Connections.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <optional>

namespace tvrx {

namespace {

using response::mid;

const QString kNoRejectCodes = QStringLiteral("No Reject Codes Found. Contact technical support.");
const QString kNotE1 = QStringLiteral("Not E1 type response");
const QString kNotVersion51 = QStringLiteral("Is not version 51 response");
const QString kNoFirstSeparator = QStringLiteral("First group seperator not found");

const QLatin1StringView kEligibilityCode("E1");
const QLatin1StringView kMedicareMark("MEDICARE ELIG");
const QLatin1StringView kApproved("A");

const QString kLF = QStringLiteral("\n");
const QString kCRLF = QStringLiteral("\r\n");

// The report's page: portrait, narrow margins (500 twips) for its wide tables.
constexpr int kPortrait = 1;
constexpr int kReportMargin = 500;
constexpr double kTitleSize = 14;
constexpr double kBodySize = 12;
constexpr qint32 kRed = 255;
constexpr qint32 kBlack = 0;
constexpr qint32 kHeaderShade = 65535;
constexpr qint32 kBodyShade = 0xFFFFFF;
constexpr int kRuleLength = 70;
constexpr qsizetype kHeaderStatusPosition = 6;
// Each plan of the message: a label, then BIN, PCN, group, member id, person code and
// the plan's telephone.
constexpr int kPlanValues = 6;
const QString kTableFormat = QStringLiteral("+1500|+1100|+1500|+^2500|+^2500|+^900|+>1600;");
const QString kTableHeader = QStringLiteral("Plan|BIN|PCN|Group #|ID|Per Code|Ins Phone;");

// The words of the report about one of the two plans.
struct PlanWords {
    QString rowLabel;
    QString found;
    QString attached;
    QString notAttached;
    QString inLookup;
    QString nowhere;
};

const PlanWords kPrimaryWords{
    QStringLiteral("PRMARY"),
    QStringLiteral("The primary insurnce was found in the Tessivar database with the Code, "),
    QStringLiteral("There is a primary insurance plan configured for this patient."),
    QStringLiteral("Primary insurance was not found to be configured for this patient, but can be "
                   "configured with the button to the left."),
    QStringLiteral("Although the primary insurance was not found in Tessivar, it was found in the "
                   "Insurance Lookup database so can be added with a button on left."),
    QStringLiteral("The primary insurance was not found in Tessivar or in the Insurance Lookup "
                   "files so will need to be entered manually."),
};

const PlanWords kSecondaryWords{
    QStringLiteral("SECONDARY"),
    QStringLiteral("The secondary insurnce was found in the Tessivar database with the Code, "),
    QStringLiteral("There is a secondary insurance plan configured for this patient."),
    QStringLiteral("Secondary insurance was not found to be configured for this patient, but can "
                   "be configured with the button to the left."),
    QStringLiteral("Although the secondary insurance was not found in Tessivar, it was found in "
                   "the Insurance Lookup database so can be added with a button on left."),
    QStringLiteral("The secondary insurance was not found in Tessivar or in the Insurance Lookup "
                   "files so will need to be entered manually."),
};

// One entry of a list; past its end, a subscript out of range.
const QString& entry(const QStringList& list, qsizetype index) {
    if (index < 0 || index >= list.size()) fail(err::SubscriptOutOfRange);
    return list.at(index);
}

// The segment named `name` (byte 28 and the name, behind a byte 30); empty when missing.
QString segment(const QString& text, const char* name) {
    QString separator{QChar(mdlMain::kSegmentSeparator)};
    QString scan = text;
    const QString code = QChar(mdlMain::kFieldSeparator) + QLatin1String(name);
    return mdlMain::GetField(code, text, separator, scan).value_or(QString());
}

}  // namespace

// Reads one answer into its patient. Every step that can fail runs in the method's frame,
// and a failed step leaves what it would have set as it was.
class EligibilityAnswer {
public:
    EligibilityAnswer(clsPatient& patient, Frame& frame) : patient_(patient), frame_(frame) {}

    bool read(const QString& path);

private:
    struct Side {
        const PlanWords& words;
        clsPatient::NamedPlan& plan;
        bool& configured;
        bool& patientConfigured;
        bool& lookupAvailable;
    };

    bool refuse(const QString& message) {
        patient_.eligibility_.ErrorMessage = message;
        return false;
    }
    bool checkAnswer();
    void beginReport();
    void printHeader();
    void finishReport();
    void readStatus();
    void readRejects(const QString& status, const QString& am21);
    void printStatus();
    void readPlans();
    QString planTable(const Side& side, const QStringList& list, qsizetype offset);
    QString checkPlan(const Side& side);

    clsPatient& patient_;
    Frame& frame_;
    std::shared_ptr<const RejectTable> rejects_;
    QString text_;
    std::unique_ptr<frmEligibility> form_;
    QString raw_;
    QString message_;
    QString phone_;
    QString statusLine_;
    QString rejectText_;
    QString primaryText_;
    QString secondaryText_;
};

bool EligibilityAnswer::read(const QString& path) {
    bool connected = false;
    frame_([&] {
        RejectTable::noteLookupState();
        connected = mdlMain::ConnectLookup();
    });
    if (!connected) return false;
    frame_([&] { rejects_ = RejectTable::forLookupConnection(); });
    if (!rejects_ || rejects_->empty()) return refuse(kNoRejectCodes);
    frame_([&] { text_ = response::readWholeFile(path); });
    if (!checkAnswer()) return false;

    beginReport();
    printHeader();
    readStatus();
    printStatus();
    readPlans();

    finishReport();
    return true;
}

void EligibilityAnswer::printHeader() {
    const QString header = text_.left(text_.indexOf(QChar(mdlMain::kGroupSeparator)));
    raw_ = header;
    PageDocument& doc = form_->vp();
    doc.setFontSize(kBodySize);
    doc.setTextColor(kBlack);
    const bool rejected = header.size() >= kHeaderStatusPosition &&
                          header.at(kHeaderStatusPosition - 1) == response::kHeaderRejected.front();
    doc.addText((rejected ? QStringLiteral("HEADER REJECTED") : QStringLiteral("HEADER ACCEPTED")) +
                kLF);
}

// The plans' texts, then the form with its buttons, shown until the user closes it.
void EligibilityAnswer::finishReport() {
    PageDocument& doc = form_->vp();
    form_->setPatientData(&patient_);
    doc.setFontBold(true);
    doc.addParagraph(kLF + primaryText_);
    doc.addParagraph(kLF + secondaryText_);
    doc.EndDoc();
    form_->ConfigureButtons();
    form_->Show();
}

// The version and transaction code of the whole text; the rest is read without its start
// byte, which must hold a group separator.
bool EligibilityAnswer::checkAnswer() {
    QString version;
    QString code;
    frame_([&] {
        version = mid(text_, response::kVersion).toString();
        code = mid(text_, response::kTransactionCode).toString();
    });
    if (code != kEligibilityCode) return refuse(kNotE1);
    if (version != response::kVersion51) return refuse(kNotVersion51);
    text_.remove(0, 1);
    if (!text_.contains(QChar(mdlMain::kGroupSeparator))) return refuse(kNoFirstSeparator);
    return true;
}

void EligibilityAnswer::beginReport() {
    form_ = std::make_unique<frmEligibility>();
    PageDocument& doc = form_->vp();
    doc.setDevice(patient_.SelectedPrinter);
    doc.setPageSettings(kPortrait, kReportMargin, kReportMargin);
    doc.StartDoc();
    doc.setFontBold(true);
    doc.setFontSize(kTitleSize);
    doc.setTextColor(kRed);
    doc.addText(QStringLiteral("ELIGIBILITY CHECK FOR: ") + patient_.FirstName + u' ' +
                patient_.LastName + kLF);
    doc.addParagraph(QString(kRuleLength, u'-'));
}

// The message, status, help desk and rejects of the answer's segments.
void EligibilityAnswer::readStatus() {
    QString am20;
    QString am21;
    frame_([&] { am20 = segment(text_, "AM20"); });
    frame_([&] { am21 = segment(text_, "AM21"); });
    if (!am20.isEmpty()) {
        const response::FieldReader fields(am20);
        QString value;
        frame_([&] { value = fields.text(response::kFieldMessage); });
        raw_ += kCRLF + QStringLiteral("MESSAGE: ") + value;
        message_ = value;
    }
    if (am21.isEmpty()) return;
    const response::FieldReader fields(am21);
    QString value;
    frame_([&] { value = fields.text(response::kFieldAdditionalMessage); });
    raw_ += kCRLF + value;
    message_ += value;
    frame_([&] { phone_ = fields.text(response::kFieldPhone); });
    raw_ += kCRLF + QStringLiteral("HELP DESK PHONE NUMBER: ") + phone_;
    QString status;
    frame_([&] { status = fields.text(response::kFieldStatus); });
    statusLine_ = status == kApproved ? QStringLiteral("REQUEST APPROVED")
                                      : QStringLiteral("REQUEST REJECTED");
    readRejects(status, am21);
}

// Each reject code with its description, as many as the count says and the answer holds.
void EligibilityAnswer::readRejects(const QString& status, const QString& am21) {
    if (status != response::kStatusRejected) return;
    const response::FieldReader fields(am21);
    qint32 count = 0;
    frame_([&] {
        count =
            conv::LongFromDouble(response::numericValue(fields.value(response::kFieldRejectCount)));
    });
    if (count <= 0) return;
    rejectText_ = QStringLiteral(" REJECTS: ") + QString::number(count);
    qsizetype at = 1;
    QString description;
    for (qint32 i = 1; i <= count; ++i) {
        frame_([&] { at = fields.find(response::kFieldRejectCode, i == 1 ? 1 : at + 3); });
        // A count larger than the codes sent lists the codes sent, and no more.
        if (at == 0) break;
        QString code;
        frame_([&] {
            code = response::trimmed(mid(am21, at + response::kValueOffset, 2)).toString();
        });
        frame_([&] {
            if (const std::optional<QString> found = rejects_->descriptionOf(code)) {
                description = found->left(response::kDescriptionLength);
            }
        });
        rejectText_ += kLF + QStringLiteral("  ") + code + QStringLiteral(": ") + description;
    }
}

void EligibilityAnswer::printStatus() {
    PageDocument& doc = form_->vp();
    doc.setFontBold(true);
    doc.addText(QStringLiteral("RAW DATA: "));
    doc.setFontBold(false);
    doc.addText(raw_ + kLF + kLF);
    doc.setFontBold(true);
    doc.addText(QStringLiteral("HELP DESK PHONE NUMBER: "));
    doc.setTextColor(kRed);
    doc.addText(phone_ + kLF);
    doc.setFontBold(false);
    doc.setTextColor(kBlack);
    doc.addText(statusLine_ + kLF);
    if (!rejectText_.isEmpty()) {
        doc.setFontBold(true);
        doc.addText(rejectText_ + kLF);
    }
}

// The message lists the primary plan before the first "&" and the secondary one in the
// first element behind it that is not blank; each plan is a ";"-separated list.
void EligibilityAnswer::readPlans() {
    const QStringList elements = message_.split(u'&');
    if (elements.size() < 2) return;
    std::optional<QStringList> primary;
    std::optional<QStringList> secondary;
    for (qsizetype i = 0; i < elements.size(); ++i) {
        if (conv::Trim(elements.at(i)).isEmpty()) continue;
        if (i == 0) {
            primary = elements.at(i).split(u';');
            continue;
        }
        secondary = elements.at(i).split(u';');
        break;
    }
    clsPatient::EligibilityState& state = patient_.eligibility_;
    if (primary && primary->size() >= 2) {
        // A Medicare answer puts one more entry in front of the values.
        const qsizetype offset = primary->at(0).contains(kMedicareMark) ? 2 : 1;
        primaryText_ = planTable({kPrimaryWords, state.Primary, state.PrimaryConfigured,
                                  state.PatientPrimaryConfigured, state.PrimaryLookupAvailable},
                                 *primary, offset);
    }
    if (secondary) {
        secondaryText_ =
            planTable({kSecondaryWords, state.Secondary, state.SecondaryConfigured,
                       state.PatientSecondaryConfigured, state.SecondaryLookupAvailable},
                      *secondary, 1);
    }
}

// The plan's row of the report and its values; returns what the report says of it.
QString EligibilityAnswer::planTable(const Side& side, const QStringList& list, qsizetype offset) {
    QString row = side.words.rowLabel;
    for (int i = 0; i < kPlanValues; ++i) {
        frame_([&] { row += u'|' + clsPatient::ParseElgField(entry(list, offset + i)); });
    }
    QString* const values[kPlanValues] = {&side.plan.BIN,         &side.plan.PCN,
                                          &side.plan.GroupNumber, &side.plan.MemberID,
                                          &side.plan.PersonCode,  &side.plan.InsPhone};
    for (int i = 0; i < kPlanValues; ++i) {
        frame_([&] { *values[i] = clsPatient::ParseElgField(entry(list, offset + i)); });
    }
    QString said = checkPlan(side);
    row += u';';
    form_->vp().addTable(kTableFormat, kTableHeader, row, kHeaderShade, kBodyShade);
    return said;
}

// Whether the pharmacy has the plan, and the patient; else whether the directory knows it.
QString EligibilityAnswer::checkPlan(const Side& side) {
    clsINSURANCE plan;
    bool found = false;
    frame_([&] { found = plan.FindByBinAndPcn(side.plan.BIN, side.plan.PCN); });
    if (found) {
        side.configured = true;
        QString said =
            side.words.found + plan.InsCode + QStringLiteral(", and the name, ") + plan.Name + u'.';
        if (patientHasPlan(frame_, plan.InsID, patient_.PatientID)) {
            side.patientConfigured = true;
            return said + kLF + side.words.attached;
        }
        return said + kLF + side.words.notAttached;
    }
    bool known = false;
    frame_([&] {
        const std::shared_ptr<PlanLookup> lookup = newPlanLookup();
        lookup->SearchBinAndProcessor(side.plan.BIN, side.plan.PCN, known);
    });
    if (!known) return side.words.nowhere;
    side.lookupAvailable = true;
    return side.words.inLookup;
}

bool clsPatient::ParseClaimFile(const QString& sClaimFile) {
    Frame frame("clsPatient:ParseClaimFile");
    EligibilityAnswer answer(*this, frame);
    return answer.read(sClaimFile);
}

QString clsPatient::ParseElgField(const QString& sField) {
    if (sField.isEmpty()) return {};
    const QStringList parts = sField.split(u':');
    return parts.size() >= 2 ? parts.at(1) : parts.at(0);
}

}  // namespace tvrx
