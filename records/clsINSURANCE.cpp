#include "records/clsINSURANCE.h"

#include "records/PlanLookup.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {
using C = clsINSURANCE;
using R = ReadForm;
using W = WriteForm;
}  // namespace

// Every column is assigned through the plan's record set, so each is written as the
// member holds it; texts are read joined to an empty text, numbers behind the text "0".
const ColumnTable<C>& insuranceColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("INSURANCE"), QStringLiteral("InsID"),
        {
            {"InsCode", member(&C::InsCode), R::text(), W::value()},
            {"Name", member(&C::Name), R::text(), W::value()},
            {"Address", member(&C::Address), R::text(), W::value()},
            {"City", member(&C::City), R::text(), W::value()},
            {"State", member(&C::State), R::text(), W::value()},
            {"Zip", member(&C::Zip), R::text(), W::value()},
            {"Phone", member(&C::Phone), R::text(), W::value()},
            {"Fax", member(&C::Fax), R::text(), W::value()},
            {"Notes", member(&C::Notes), R::text(), W::value()},
            {"Contact", member(&C::Contact), R::text(), W::value()},
            {"Fee", member(&C::Fee), R::zeroText(), W::value()},
            {"FeePS", member(&C::FeePS), R::zeroText(), W::value()},
            {"Copay", member(&C::Copay), R::zeroText(), W::value()},
            {"CopayPS", member(&C::CopayPS), R::zeroText(), W::value()},
            {"GenericFee", member(&C::GenericFee), R::zeroText(), W::value()},
            {"GenericCopay", member(&C::GenericCopay), R::zeroText(), W::value()},
            {"GenCopayPS", member(&C::GenCopayPS), R::zeroText(), W::value()},
            {"DaysSupply", member(&C::DaysSupply), R::nullScreen(0), W::value()},
            {"Basis", member(&C::Basis), R::text(), W::value()},
            {"Form", member(&C::Form), R::text(), W::value()},
            {"ID", member(&C::ID), R::text(), W::value()},
            {"Invoice", member(&C::Invoice), R::text(), W::value()},
            {"UandC", member(&C::UandC), R::nullScreen(0), W::value()},
            {"PatCopay", member(&C::PatCopay), R::nullScreen(0), W::value()},
            {"DoctorID", member(&C::DoctorID), R::text(), W::value()},
            {"OnLineLimit", member(&C::OnLineLimit), R::zeroText(), W::value()},
            {"OnLinePhone", member(&C::OnLinePhone), R::text(), W::value()},
            {"Device", member(&C::Device), R::text(), W::value()},
            {"ModemSpeed", member(&C::ModemSpeed), R::text(), W::value()},
            {"DB", member(&C::DB), R::text(), W::value()},
            {"SB", member(&C::SB), R::text(), W::value()},
            {"Parity", member(&C::Parity), R::text(), W::value()},
            {"BIN", member(&C::BIN), R::text(), W::value()},
            {"ProcNumb", member(&C::ProcNumb), R::text(), W::value()},
            {"BrandPT", member(&C::BrandPT), R::zeroText(), W::value()},
            {"GenericPT", member(&C::GenericPT), R::zeroText(), W::value()},
            {"OnLine", member(&C::OnLine), R::zeroText(), W::value()},
            {"Internet", member(&C::Internet), R::zeroText(), W::value()},
            {"VendorID", member(&C::VendorID), R::text(), W::value()},
            {"ClaimFields", member(&C::ClaimFields), R::text(), W::value()},
            {"IDQualifier", member(&C::IDQualifier), R::text(), W::value()},
        });
    return table;
}

namespace {

const QString kInsertClaimFields = QStringLiteral("CA,CB,CM,CN,CO,CP,CQ,CX,DR,EJ,EA,EB,EW1");

// The search the user picks in the lookup's choice dialog.
enum Method { ByName = 1, ByBin = 2, ByBinAndProcessor = 3 };

const QString kSearchTitle = QStringLiteral("SEARCH FOR INSURANCE");
const QString kBinAndPcnPrompt = QStringLiteral("Enter BIN number and Processor Control Number ") +
                                 QStringLiteral("separated by a comma. (ie BIN, PCN)");

// What becomes of the plan once the directory has answered.
enum class Outcome {
    Nothing,   // no plan found, or the user went to the existing one
    NewPlan,   // a new row is made
    BringBack  // a deleted row is undeleted and overwritten
};

// The row of INSURANCE with the BIN and processor of the plan looked up.
struct ExistingPlan {
    bool exists = false;
    QString InsCode;
    QString Name;
    QVariant InsID;
    // As a boolean field: -1 deleted, 0 not, null unknown.
    QVariant Deleted;
};

ExistingPlan existingPlan(const PlanLookup& lookup) {
    DbConnection& connection = records::mainConnection();
    const Dialect& dialect = connection.dialect();
    RecordSet rs = connection.OpenRecordSet(
        QStringLiteral("Select InsCode, Name, InsID, Deleted From INSURANCE Where %1 And %2")
            .arg(dialect.textEquals(QStringLiteral("BIN")),
                 dialect.textEquals(QStringLiteral("ProcNumb"))),
        {conv::Trim(lookup.BIN()), conv::Trim(lookup.ProcessorNumber)});
    ExistingPlan plan;
    if (!rs.Eof()) {
        plan.exists = true;
        plan.InsCode = columns::textOf(rs.Fields(QStringLiteral("InsCode")));
        plan.Name = columns::textOf(rs.Fields(QStringLiteral("Name")));
        plan.InsID = rs.Fields(QStringLiteral("InsID"));
        plan.Deleted = rs.asBoolean(QStringLiteral("Deleted"));
    }
    return plan;
}

bool isDeleted(const ExistingPlan& plan) {
    return plan.Deleted.isValid() && plan.Deleted.toInt() == -1;
}

bool isActive(const ExistingPlan& plan) {
    return plan.Deleted.isValid() && plan.Deleted.toInt() == 0;
}

QString existsText(const PlanLookup& lookup, const ExistingPlan& plan) {
    return QStringLiteral("The Insurance company you looked up with the BIN, ") + lookup.BIN() +
           QStringLiteral(", and the Processor, ") + lookup.ProcessorNumber + QStringLiteral(", ") +
           QStringLiteral("\r\n") +
           QStringLiteral("exists in Tessivar already with an Insurance Code of ") + plan.InsCode +
           QStringLiteral(" and a Name of") + plan.Name;
}

Answer askCreateAnyway(const PlanLookup& lookup, const ExistingPlan& plan) {
    return mdlMain::user().MsgBox(
        existsText(lookup, plan) +
            QStringLiteral(". Click NO to cancel this lookup and go directly to the existing "
                           "insurance or ") +
            QStringLiteral("click YES to create anyway."),
        Buttons::YesNo, Icon::Information, 2, appConfig().Title);
}

Answer askUndelete(const PlanLookup& lookup, const ExistingPlan& plan) {
    return mdlMain::user().MsgBox(existsText(lookup, plan) +
                                      QStringLiteral(" but has been marked as DELETED.") +
                                      QStringLiteral("Would you like to UNDELETE this insurance? "),
                                  Buttons::YesNo, Icon::Information, 2, appConfig().Title);
}

// The text to search the directory with, as the user enters it for the method chosen.
QString askSearchText(int method) {
    UserInteraction& user = mdlMain::user();
    switch (method) {
        case ByName:
            return user.InputBox(QStringLiteral("Enter all or part of insurance plan name. "),
                                 kSearchTitle, QString());
        case ByBin: {
            const QString text =
                user.InputBox(QStringLiteral("Enter all or part of insurance BIN Number. "),
                              kSearchTitle, QString());
            return conv::Trim(text).isEmpty() ? text : QStringLiteral("#") + text;
        }
        case ByBinAndProcessor:
            return user.InputBox(kBinAndPcnPrompt, kSearchTitle, QString());
        default:
            return QString();
    }
}

// The directory of this call; a host's factory that gave none fails each use with 91.
PlanLookup& directory(const std::shared_ptr<PlanLookup>& lookup) {
    if (!lookup) fail(err::ObjectVariableNotSet);
    return *lookup;
}

void searchDirectory(PlanLookup& lookup, int method, const QString& text, bool& found) {
    if (method != ByBinAndProcessor) {
        lookup.Search(text, found);
        return;
    }
    if (!text.contains(QLatin1Char(','))) {
        mdlMain::user().MsgBox(QStringLiteral("BIN and PCN not entered in proper format. Enter in "
                                              "the format: 'BIN,PCN'"),
                               Buttons::OKOnly, Icon::Information, 1, QStringLiteral("Tessivar"));
        return;
    }
    const QStringList pieces = text.split(QLatin1Char(','));
    lookup.SearchBinAndProcessor(conv::Trim(pieces.at(0)), conv::Trim(pieces.at(1)), found);
}

}  // namespace

std::shared_ptr<DbConnection> clsINSURANCE::Connection() const {
    return mdlMain::MainConnection;
}

void clsINSURANCE::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("clsINSURANCE:Connection"));
}

bool clsINSURANCE::GetData() {
    const ColumnTable<C>& table = insuranceColumns();
    Frame frame("clsINSURANCE:GetData");
    const bool found = table.load(frame, table.selectAll(), InsID, *this, table.all(),
                                  FailedRowTest::MissesTheRow);
    if (!found) InsID = 0;
    return found;
}

void clsINSURANCE::Update() {
    Frame frame("clsINSURANCE:Update");
    insuranceColumns().store(frame, *this, InsID);
}

void clsINSURANCE::Delete() {
    Frame frame("clsINSURANCE:Delete");
    frame([&] {
        records::mainConnection().Execute(
            QStringLiteral("UPDATE INSURANCE Set Deleted = 1 WHERE InsID = ?"), {InsID});
    });
}

bool clsINSURANCE::FindByBinAndPcn(const QString& sBIN, const QString& sPCN) {
    RecordSet rs;
    bool found = false;
    Frame frame("clsINSURANCE:FindByBinAndPcn");
    frame([&] {
        DbConnection& connection = records::mainConnection();
        const Dialect& dialect = connection.dialect();
        rs = connection.OpenRecordSet(QStringLiteral("Select InsID From Insurance Where %1 And %2")
                                          .arg(dialect.textEquals(QStringLiteral("BIN")),
                                               dialect.textEquals(QStringLiteral("ProcNumb"))),
                                      {sBIN, sPCN});
    });
    frame([&] { found = !rs.Eof(); });
    if (!found) return false;
    frame([&] { InsID = conv::ToInteger(rs.Fields(QStringLiteral("InsID"))); });
    return GetData();
}

void clsINSURANCE::setDefaults(const QString& NABP, const QString& claimFields) {
    IDQualifier = QStringLiteral("07");
    Fee = 5;
    FeePS = CopayPS = GenCopayPS = 0;
    Copay = GenericFee = GenericCopay = 0;
    DaysSupply = true;
    Basis = QStringLiteral("01");
    Form = QStringLiteral("51");
    ID = NABP;
    Invoice.clear();
    UandC = true;
    PatCopay = false;
    DoctorID = QStringLiteral("DEA");
    OnLineLimit = 1;
    BrandPT = GenericPT = 0;
    OnLine = Internet = true;
    for (QString* text :
         {&InsCode, &Name, &Address, &City, &State, &Zip, &Phone, &Fax, &Notes, &Contact,
          &OnLinePhone, &Device, &ModemSpeed, &DB, &SB, &Parity, &BIN, &ProcNumb, &VendorID}) {
        text->clear();
    }
    ClaimFields = claimFields;
}

namespace {

// The members a new or recovered plan takes from the directory.
void fillFromLookup(clsINSURANCE& plan, PlanLookup& lookup) {
    const QString month = conv::Format(mdlMain::clock().now().date().month(), QStringLiteral("00"));
    plan.InsCode = QString(lookup.ShortName().left(8) + month).remove(QLatin1Char(' '));
    plan.Name = lookup.PlanName();
    const QString maxScripts = QString::number(lookup.MaxScripts());
    plan.Notes = QStringLiteral("CARRIER: ") + lookup.Carrier() + QStringLiteral(", ") +
                 QStringLiteral("STATUS: ") + lookup.Status() + QStringLiteral(", ") +
                 QStringLiteral("PBM: ") + lookup.PBM() + QStringLiteral(", ") +
                 QStringLiteral("VERSION: ") + lookup.Version() + QStringLiteral("\r\n") +
                 QStringLiteral("STATES: ") + lookup.States() + QStringLiteral(", ") +
                 QStringLiteral("MAX SCRIPTS: ") + maxScripts + QStringLiteral(", ") +
                 QStringLiteral("REF SHEET: ") + lookup.RefSheet();
    plan.Form = lookup.Version().contains(QStringLiteral("51")) ? QStringLiteral("51")
                                                                : QStringLiteral("3A");
    plan.OnLineLimit = lookup.MaxScripts();
    plan.BIN = lookup.BIN();
    if (lookup.ProcessorNumber.size() >= 11)
        lookup.ProcessorNumber = lookup.ProcessorNumber.left(10);
    plan.ProcNumb = lookup.ProcessorNumber;
}

// Makes the new row, or brings the deleted one back, and writes the members to it. The
// new key goes into the 16-bit InsID, where a key above 32,767 overflows.
void createOrBringBack(clsINSURANCE& plan, Outcome outcome, Frame& frame, qint32& result) {
    if (outcome == Outcome::NewPlan) {
        frame([&] {
            plan.InsID = conv::ToInteger(
                Procedures::newKey(records::mainConnection(), QStringLiteral("NewInsurance")));
        });
        result = plan.InsID;
        plan.Update();
    } else if (outcome == Outcome::BringBack) {
        frame([&] {
            records::mainConnection().Execute(
                QStringLiteral("UPDATE Insurance SET Deleted = 0 WHERE InsID = ?"), {plan.InsID});
        });
        result = plan.InsID;
        plan.Update();
    }
}

}  // namespace

qint32 clsINSURANCE::Insert(const QString& NABP, bool& FoundExisting) {
    qint32 result = 0;
    Outcome outcome = Outcome::Nothing;
    Frame frame("clsINSURANCE:Insert");
    setDefaults(NABP, kInsertClaimFields);
    Answer useLookup = Answer::No;
    frame([&] {
        useLookup = mdlMain::user().MsgBox(
            QStringLiteral("Would you like to use the Insurance lookup feature?"), Buttons::YesNo,
            Icon::Question, 1, appConfig().ProductName);
    });
    if (useLookup == Answer::No) outcome = Outcome::NewPlan;

    // One directory object for this call, released at its end.
    std::shared_ptr<PlanLookup> lookup;
    frame([&] { lookup = newPlanLookup(); });
    bool found = false;
    if (useLookup == Answer::Yes) {
        int method = 0;
        QString text;
        frame([&] {
            method = mdlMain::user().Choose(
                QStringLiteral("&Plan Name, &BIN, BIN &And Processor, &Cancel"), 4, 1,
                QStringLiteral("Choose Lookup Method"),
                QStringLiteral("Choose your method of insurance lookup below."), 4);
        });
        frame([&] { text = askSearchText(method); });
        if (!text.isEmpty()) {
            frame([&] { searchDirectory(directory(lookup), method, text, found); });
        }
    }

    if (found) {
        ExistingPlan existing;
        frame([&] { existing = existingPlan(directory(lookup)); });
        if (!existing.exists) {
            outcome = Outcome::NewPlan;
        } else if (isActive(existing)) {
            Answer answer = Answer::No;
            frame([&] { answer = askCreateAnyway(directory(lookup), existing); });
            if (answer == Answer::No) {
                FoundExisting = true;
                frame([&] { InsID = conv::ToInteger(existing.InsID); });
            } else {
                outcome = Outcome::NewPlan;
            }
        } else if (isDeleted(existing)) {
            Answer answer = Answer::No;
            frame([&] { answer = askUndelete(directory(lookup), existing); });
            if (answer == Answer::No) return 0;
            outcome = Outcome::BringBack;
            FoundExisting = true;
            frame([&] { InsID = conv::ToInteger(existing.InsID); });
        }
        if (outcome != Outcome::Nothing) frame([&] { fillFromLookup(*this, directory(lookup)); });
    }

    createOrBringBack(*this, outcome, frame, result);
    if (outcome == Outcome::Nothing && InsID > 0) {
        if (GetData()) result = InsID;
    }
    return result;
}

qint32 clsINSURANCE::InsertFromLookup(const QString& NABP, const QString& sBIN,
                                      const QString& sPCN) {
    qint32 result = 0;
    Frame frame("clsINSURANCE:InsertFromLookup");
    setDefaults(NABP, QString());
    std::shared_ptr<PlanLookup> lookup;
    frame([&] { lookup = newPlanLookup(); });
    bool found = false;
    frame([&] { directory(lookup).SearchBinAndProcessor(sBIN, sPCN, found); });
    if (!found) return 0;

    ExistingPlan existing;
    frame([&] { existing = existingPlan(directory(lookup)); });
    Outcome outcome = Outcome::NewPlan;
    if (existing.exists && isDeleted(existing)) {
        Answer answer = Answer::No;
        frame([&] { answer = askUndelete(directory(lookup), existing); });
        if (answer == Answer::No) return 0;
        frame([&] { InsID = conv::ToInteger(existing.InsID); });
        outcome = Outcome::BringBack;
    } else if (existing.exists) {
        frame([&] { result = conv::ToLong(existing.InsID); });
        return result;
    }
    frame([&] { fillFromLookup(*this, directory(lookup)); });
    createOrBringBack(*this, outcome, frame, result);
    return result;
}

}  // namespace tvrx
