#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// The payers the simulator stands in for, as the payer file describes them
// (docs/SIMULATOR.md). Amounts are whole cents.
namespace tvrx::sw {

struct Drug {
    QString product;  // the product ID as claims send it (an NDC of 11 digits, or an HCPCS code)
    QString name;
    bool generic = false;
};

struct Member {
    QString cardholderId;  // compared with the claim's, both trimmed
    int personCode = 0;    // compared by numeric value
    QString dateOfBirth;   // YYYYMMDD
    QString name;          // for the history and the reader; never compared
    bool covered = true;   // false: "65" Patient Is Not Covered
    // The days of coverage an eligibility request is answered for, YYYYMMDD; empty: open.
    QString coveredFrom;
    QString coveredThrough;
    // Where the plan stands among the member's plans: 1 primary, 2 secondary, ...
    int payerOrder = 1;
};

struct Pricing {
    // Ingredient cost paid: the submitted cost less this percentage, or the submitted cost as
    // it stands when none is given.
    std::optional<double> awpLessPercent;
    qint64 dispensingFee = 0;
    double salesTaxPercent = 0;  // of ingredient cost and fee
};

// What the patient pays: a copay by brand or generic, or a share of the gross amount.
struct PatientPay {
    qint64 brandCopay = 0;
    qint64 genericCopay = 0;
    std::optional<double> coinsurancePercent;
};

enum class RuleKind {
    NotCovered,          // "70" for the products listed
    PriorAuthorization,  // "75" for the products listed, unless a PA number is sent
    Limits,              // "76" over a quantity or days supply
    RefillTooSoon,       // "79" before the share of the last fill's days supply is used
    Interaction,         // a DUR finding "DD", or reject "88", with another drug in history
    Reject,              // any code from the reject table, for the products or Rx numbers listed
    Duplicate83,         // "83" for the Rx numbers listed
    Capture,             // status "C" for the Rx numbers listed
};

struct PlanRule {
    RuleKind kind = RuleKind::NotCovered;
    QStringList products;   // empty: every product
    QStringList rxNumbers;  // empty: every prescription
    QString code;           // RuleKind::Reject
    std::optional<double> maxQuantity;
    std::optional<int> maxDaysSupply;
    int percentUsed = 75;            // RuleKind::RefillTooSoon
    bool rejectInteraction = false;  // RuleKind::Interaction: "88" in place of a finding
    int severity = 1;                // 1 major, 2 moderate, 3 minor
};

struct Plan {
    QString name;
    QString bin;
    QString pcn;
    std::optional<QString> group;  // when given, the claim's group must match
    QStringList layouts;           // the versions it accepts: "51", "32", "3B", ...
    bool anyMember = false;
    QList<Member> members;
    Pricing pricing;
    PatientPay patientPay;
    QList<PlanRule> rules;
    QString planId;         // sent back as the plan ID of a 5.1 answer
    QString helpDesk;       // a telephone number sent with 5.1 rejections
    bool medicare = false;  // eligibility answers name it as a Medicare plan
};

struct Payers {
    QList<Plan> plans;
    QHash<QString, Drug> drugs;  // by product
};

// The payers of a JSON file, or the first problem found: a syntax error with its line and
// column, or a value that does not fit with the JSON path of that value and the reason.
// knownRejectCode says whether a code stands in the reject table.
struct PayerFileResult {
    std::optional<Payers> payers;
    QString problem;
};
PayerFileResult loadPayerFile(const QString& path,
                              const std::function<bool(const QString&)>& knownRejectCode);

}  // namespace tvrx::sw
