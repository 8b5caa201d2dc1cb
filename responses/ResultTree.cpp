// Wrapper.BuildTree and Wrapper.ParseDUR: what each payer answered, shown on the host's
// tree control.

#include "claims/Wrapper.h"
#include "records/PATINS.h"
#include "responses/TreeControl.h"
#include "responses/clsClaimResponse.h"
#include "session/data/DbConnection.h"
#include "session/data/Dialect.h"
#include "session/data/RecordSet.h"
#include "session/runtime/BusyPointer.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

#include <array>
#include <functional>

namespace tvrx {
namespace {

using Node = TreeControl::Node;

const QString kLineFeed(QChar(10));
const QString kInformation = QString::fromLatin1(TreeControl::Information);
constexpr int kHeadingSize = 12;
const QString kMoney = QStringLiteral("$ 0.00");
const QString kPercent = QStringLiteral("##0.00 %");

// The number with a leading blank for a positive value, as keys join loop counters.
QString Str(int number) {
    return number < 0 ? QString::number(number) : u' ' + QString::number(number);
}

QString T(int number) {
    return QString::number(number);
}

// A heading of a paid claim with the values shown beneath it.
struct PaidHeading {
    const char* text;
    const char* keyPrefix;
    const char* image;
    bool expandsStatus;  // the status node opens when this heading is added
    bool (*shown)(const clsClaimResponse&);
    QStringList (*values)(const clsClaimResponse&);
};

bool always(const clsClaimResponse& /*response*/) {
    return true;
}

QStringList money(double value) {
    return {conv::Format(value, kMoney)};
}

QStringList messages(const clsClaimResponse& r) {
    QStringList values{r.Message()};
    if (!r.MessageTwo().isEmpty()) values.append(r.MessageTwo());
    return values;
}

const std::array<PaidHeading, 10> kPaidHeadings{{
    {"PATIENT COPAY", "COPAY", TreeControl::Paid, true, always,
     [](const clsClaimResponse& r) { return money(r.Copay()); }},
    {"INGREDIENT COST PAID", "COST", TreeControl::Paid, false, always,
     [](const clsClaimResponse& r) { return money(r.Cost()); }},
    {"DISPENSING FEE PAID", "FEE", TreeControl::Paid, false, always,
     [](const clsClaimResponse& r) { return money(r.Fee()); }},
    {"INCENTIVE FEE", "INCENTIVE", TreeControl::Paid, false,
     [](const clsClaimResponse& r) { return r.IncentiveFee() != 0; },
     [](const clsClaimResponse& r) { return money(r.IncentiveFee()); }},
    {"TAX PAID", "TAX", TreeControl::Paid, false, always,
     [](const clsClaimResponse& r) { return money(r.SalesTax()); }},
    {"PERCENT SALES TAX SUBMITTED", "PERSALESTAX", TreeControl::Paid, false, always,
     [](const clsClaimResponse& r) {
         return QStringList{conv::Format(r.PercetSalesTaxSub(), kPercent)};
     }},
    {"TOTAL AMOUNT PAID", "TOTAL", TreeControl::Paid, false, always,
     [](const clsClaimResponse& r) { return money(r.TotalPaid()); }},
    {"PLAN ID", "PLANID", TreeControl::Paid, false,
     [](const clsClaimResponse& r) { return !r.PlanID().isEmpty(); },
     [](const clsClaimResponse& r) { return QStringList{r.PlanID()}; }},
    {"REFERENCE NUMBER", "REF", TreeControl::Information, false, always,
     [](const clsClaimResponse& r) { return QStringList{r.Reference()}; }},
    {"ADDITIONAL MESSAGE", "MESSAGE", TreeControl::Information, false, always, messages},
}};

// The DUR findings shown under a record's number, in this order, when not empty.
const std::array<QString DUR::*, 7> kDurPhrases{
    &DUR::Severity, &DUR::LastFillLocation, &DUR::LastFillDate, &DUR::LastFillQty,
    &DUR::DB,       &DUR::Prescriber,       &DUR::Message};

// Adds nodes one statement at a time. The node last added is the one the following
// statements style, as on the host's control: when an add fails, they style the node
// before it.
class NodeWriter {
public:
    NodeWriter(TreeControl& tree, std::function<void(const std::function<void()>&)> step)
        : tree_(tree), step_(std::move(step)) {}

    void add(const QString& parentKey, const QString& key, const QString& text,
             const QString& image) {
        step_([&] { node_ = tree_.Add(parentKey, key, text, image); });
    }
    void expandParent() {
        step_([&] { tree_.setExpanded(tree_.Parent(node_), true); });
    }
    void heading(qint32 colour) {
        step_([&] { tree_.setBold(node_, true); });
        step_([&] { tree_.setFontSize(node_, kHeadingSize); });
        step_([&] { tree_.setForeColor(node_, colour); });
    }
    void step(const std::function<void()>& statement) { step_(statement); }

private:
    TreeControl& tree_;
    std::function<void(const std::function<void()>&)> step_;
    Node node_ = -1;
};

// One run of BuildTree over the prescriptions of the claim.
class ResultTreeBuilder {
public:
    ResultTreeBuilder(Wrapper& wrapper, TreeControl& tree)
        : wrapper_(wrapper),
          tree_(tree),
          frame_("Wrapper:BuildTree"),
          nodes_(tree, [this](const std::function<void()>& statement) { step(statement); }) {}

    void build() {
        step([] { mdlMain::pointer().setPointer(BusyPointer::Hourglass); });
        step([&] { tree_.setRedraw(true); });
        step([&] { tree_.Clear(); });
        step([&] { tree_.setRedraw(false); });
        int count = 0;
        step([&] { count = wrapper_.colRX()->Count(); });
        for (int i = 1; i <= count; ++i) {
            for (int j = 1; j <= 2; ++j) pass(i, j);
        }
        step([&] { tree_.setRedraw(true); });
        step([] { mdlMain::pointer().setPointer(BusyPointer::Default); });
    }

private:
    // A statement of BuildTree. After a fault the user gets the pointer and the drawing
    // back at once, and the tree goes on with the next statement.
    void step(const std::function<void()>& statement) {
        const int before = frame_.failures();
        frame_(statement);
        if (frame_.failures() == before) return;
        frame_([] { mdlMain::pointer().setPointer(BusyPointer::Default); });
        frame_([&] { tree_.setRedraw(true); });
    }

    void pass(int i, int j) {
        std::shared_ptr<clsPrescription> rx;
        step([&] { rx = wrapper_.colRX()->Item(i); });
        if (!rx || (j == 2 && rx->OOnlineResult.isEmpty())) return;
        rx_ = rx;
        i_ = i;
        j_ = j;
        response_ = j == 2 ? rx->OtherResponse() : rx->Response();
        addRoot();
        if (response_->HeaderRejected) {
            nodes_.add(rootKey(), {}, QStringLiteral("Header rejected"),
                       QString::fromLatin1(TreeControl::Rejected));
        }
        if (response_->Reversal) {
            reversalBranch();
        } else {
            claimBranch();
        }
    }

    QString rootKey() const {
        return (j_ == 2 ? QStringLiteral("MainOther") : QStringLiteral("Main")) + Str(i_);
    }
    QString keyOf(const char* prefix) const {
        return QString::fromLatin1(prefix) + Str(j_) + Str(i_);
    }
    QString statusKey() const { return keyOf("Claim"); }

    void addRoot() {
        PATINS coverage;
        bool found = false;
        step([&] { coverage.PatInsID = j_ == 2 ? rx_->OPatInsID : rx_->PatInsID; });
        step([&] { found = coverage.GetData(); });
        const QString plan = coverage.InsCode + u')';
        const bool reversal = response_->Reversal;
        if (j_ == 1) {
            rootText_ = reversal ? QStringLiteral("REVERSAL RESULTS (") + plan
                                 : QStringLiteral(" -- RESULTS FROM SUBMITTED CLAIM (") + plan;
        } else if (found) {
            rootText_ = reversal ? QStringLiteral("REVERSAL RESULTS - OTHER CLAIM (") + plan
                                 : QStringLiteral(" -- RESULTS - OTHER CLAIM (") + plan;
        } else {
            // The text of the previous root stays in front of these words.
            rootText_ += QStringLiteral("NO OTHER INS FOUND FOR PATIENT");
        }
        nodes_.add({}, rootKey(), rootText_, kInformation);
        nodes_.heading(TreeControl::Blue);
    }

    void reversalBranch() {
        const QString opening = QStringLiteral("THE SUBMITTED REVERSAL HAS BEEN ");
        const QString& status = response_->PaidStatus();
        const QString messageKey = keyOf("MSG");
        if (status == QStringLiteral("SUCCESS")) {
            nodes_.add(rootKey(), {}, opening + QStringLiteral("ACCEPTED") + kLineFeed,
                       QString::fromLatin1(TreeControl::Check));
            nodes_.expandParent();
            nodes_.add(rootKey(), messageKey, QStringLiteral("MESSAGE"), kInformation);
            nodes_.add(messageKey, {}, response_->Message(), kInformation);
        } else if (status == QStringLiteral("REJECTED")) {
            addStatus(opening + QStringLiteral("REJECTED"), TreeControl::Rejected,
                      TreeControl::Red);
            addRejects();
            nodes_.add(statusKey(), messageKey, QStringLiteral("REJECT MESSAGE"),
                       QString::fromLatin1(TreeControl::Rejected));
            nodes_.add(messageKey, {}, response_->Message(), kInformation);
        }
    }

    void claimBranch() {
        const QString opening =
            QStringLiteral("RX ") + QString::number(rx_->Number) + QStringLiteral(" HAS BEEN ");
        const QString& status = response_->PaidStatus();
        if (status == QStringLiteral("PAID") || status == QStringLiteral("DUPLICATE")) {
            addStatus(opening + QStringLiteral("PAID"), TreeControl::Paid, TreeControl::Green);
            for (const PaidHeading& heading : kPaidHeadings) addPaidHeading(heading);
            addDurHeading(false);
        } else if (status == QStringLiteral("CAPTURED")) {
            addStatus(opening + QStringLiteral("CAPTURED"), TreeControl::Paid, TreeControl::Green);
            addCaptured();
        } else if (status == QStringLiteral("REJECTED")) {
            addStatus(opening + QStringLiteral("REJECTED"), TreeControl::Rejected,
                      TreeControl::Red);
            addRejects();
            const QString messageKey = keyOf("MESSAGE");
            nodes_.add(statusKey(), messageKey, QStringLiteral("REJECT MESSAGE"),
                       QString::fromLatin1(TreeControl::Rejected));
            nodes_.expandParent();
            nodes_.add(messageKey, {}, response_->Message(), kInformation);
            addDurHeading(true);
        }
    }

    void addStatus(const QString& text, const char* image, qint32 colour) {
        nodes_.add(rootKey(), statusKey(), text + kLineFeed, QString::fromLatin1(image));
        nodes_.expandParent();
        nodes_.heading(colour);
    }

    void addPaidHeading(const PaidHeading& heading) {
        if (!heading.shown(*response_)) return;
        const QString key = keyOf(heading.keyPrefix);
        nodes_.add(statusKey(), key, QString::fromLatin1(heading.text),
                   QString::fromLatin1(heading.image));
        if (heading.expandsStatus) nodes_.expandParent();
        for (const QString& value : heading.values(*response_)) {
            nodes_.add(key, {}, value, kInformation);
        }
    }

    void addCaptured() {
        const QString referenceKey = keyOf("REF");
        nodes_.add(statusKey(), referenceKey, QStringLiteral("REFERENCE NUMBER"), kInformation);
        nodes_.expandParent();
        nodes_.add(referenceKey, {}, response_->Reference(), kInformation);
        const QString messageKey = keyOf("MESSAGE");
        nodes_.add(statusKey(), messageKey, QStringLiteral("MESSAGE"), kInformation);
        for (const QString& value : messages(*response_)) {
            nodes_.add(messageKey, {}, value, kInformation);
        }
        // The node last added is a message, so the heading above it opens.
        nodes_.expandParent();
        addDurHeading(true);
    }

    // Each reject code with its description beneath, under the status node.
    void addRejects() {
        int count = 0;
        step([&] { count = response_->colReject()->Count(); });
        for (int r = 1; r <= count; ++r) {
            std::shared_ptr<Reject> reject;
            step([&] { reject = response_->colReject()->Item(r); });
            if (!reject) continue;
            // The code is held in a field of two characters: padded with blanks or cut.
            const QString code = reject->code.leftJustified(2, u' ', true);
            const QString key = code + T(r) + Str(j_) + Str(i_);
            nodes_.add(statusKey(), key, QStringLiteral("REJECT CODE - ") + code,
                       QString::fromLatin1(TreeControl::Exclamation));
            nodes_.expandParent();
            nodes_.add(key, {}, reject->Description, kInformation);
            nodes_.expandParent();
        }
    }

    void addDurHeading(bool expandStatus) {
        nodes_.add(statusKey(), QStringLiteral("DURINFO") + T(j_) + T(i_),
                   QStringLiteral("DUR INFO"), kInformation);
        if (expandStatus) nodes_.expandParent();
        int count = 0;
        step([&] { count = response_->colDUR()->Count(); });
        if (count <= 0) return;
        step([&] {
            auto index = qint16(i_);
            wrapper_.ParseDUR(tree_, index, T(j_) + T(i_), *response_, true);
        });
    }

    Wrapper& wrapper_;
    TreeControl& tree_;
    Frame frame_;
    NodeWriter nodes_;
    // Kept from one pass to the next: a second payer without coverage adds to it.
    QString rootText_;
    std::shared_ptr<clsPrescription> rx_;
    std::shared_ptr<clsClaimResponse> response_;
    int i_ = 0;
    int j_ = 0;
};

// The code with its description from the lookup database's Conflict table, or the code
// alone when the table does not know it.
QString describedConflict(const QString& number) {
    DbConnection* lookup = mdlMain::LookupConnection.get();
    if (!lookup) fail(err::ObjectVariableNotSet);
    RecordSet rows =
        lookup->OpenRecordSet(QStringLiteral("SELECT Description FROM Conflict WHERE ") +
                                  lookup->dialect().textEquals("Code"),
                              {conv::Trim(number)});
    QString text = number;
    if (!rows.Eof())
        text += QStringLiteral(" - ") + rows.Fields(QStringLiteral("Description")).toString();
    rows.Close();
    return text;
}

}  // namespace

void Wrapper::BuildTree(TreeControl& SSTree1) {
    ResultTreeBuilder(*this, SSTree1).build();
}

void Wrapper::ParseDUR(TreeControl& SSTree1, qint16& nCount, const QString& sKey,
                       clsClaimResponse& CurrentResponse, bool UpdateDB) {
    Frame frame("Wrapper:ParseDUR");
    NodeWriter nodes(SSTree1,
                     [&frame](const std::function<void()>& statement) { frame(statement); });
    const QString parentKey = QStringLiteral("DURINFO") + sKey;
    if (UpdateDB) {
        // Only the prescription is changed; its next Update stores the code.
        frame([&] {
            colRX()->Item(nCount)->DURConflict = CurrentResponse.colDUR()->Item(1)->Number;
        });
    }
    int count = 0;
    frame([&] { count = CurrentResponse.colDUR()->Count(); });
    for (int r = 1; r <= count; ++r) {
        std::shared_ptr<DUR> record;
        frame([&] { record = CurrentResponse.colDUR()->Item(r); });
        // Blank records, which fixed layouts always send, add nothing.
        if (!record || (record->Number.isEmpty() && record->Message.isEmpty())) continue;
        const QString recordKey = parentKey + QStringLiteral("DUR") + T(r);
        nodes.add(parentKey, recordKey, QStringLiteral("DUR NUMBER ") + T(r), kInformation);
        nodes.expandParent();
        if (!record->Number.isEmpty()) {
            // A failed look-up is reported and the code is shown alone.
            QString text = record->Number;
            frame([&] { text = describedConflict(record->Number); });
            nodes.add(recordKey, {}, text, kInformation);
        }
        for (QString DUR::*phrase : kDurPhrases) {
            const QString& value = (*record).*phrase;
            if (!value.isEmpty()) nodes.add(recordKey, {}, value, kInformation);
        }
    }
    if (!CurrentResponse.DURExtra().isEmpty()) {
        nodes.add(parentKey, {}, CurrentResponse.DURExtra(), kInformation);
    }
}

}  // namespace tvrx
