#include "Adjudicator.h"

#include "session/text/Conversions.h"

#include <cmath>

namespace tvrx::sw {

namespace {

const QString kDay = QStringLiteral("yyyyMMdd");
// The largest amount a fixed answer's six characters hold, in cents.
constexpr qint64 kLargestFixedAmount = 999999;
const QLatin1StringView kNdcQualifier("03");
const QLatin1StringView kInteraction("DD");

QDate dayOf(const QString& text) {
    return QDate::fromString(text.trimmed(), kDay);
}

// A prescription number as the history keeps it: its value, without leading zeros.
QString numberKey(const QString& text) {
    return QString::number(static_cast<qint64>(conv::Val(text)));
}

qint64 percentOf(qint64 cents, double percent) {
    return std::llround(static_cast<double>(cents) * percent / 100);
}

bool applies(const PlanRule& rule, const Claim& claim) {
    const QString product = claim.text(Value::Product).trimmed();
    const QString rx = numberKey(claim.text(Value::RxNumber));
    return (rule.products.isEmpty() || rule.products.contains(product)) &&
           (rule.rxNumbers.isEmpty() || rule.rxNumbers.contains(rx));
}

}  // namespace

struct Adjudicator::Context {
    const Transmission& transmission;
    const Plan* plan = nullptr;
    const Member* member = nullptr;  // none when the plan takes any member
    bool fixed = true;

    QString header(Value value) const { return transmission.value(value).trimmed(); }
    ClaimKey keyOf(const Claim& claim) const {
        return {header(Value::Bin),
                header(Value::Pcn),
                header(Value::PharmacyId),
                numberKey(claim.text(Value::RxNumber)),
                QString::number(static_cast<qint64>(conv::Val(claim.text(Value::FillNumber)))),
                header(Value::DateOfService)};
    }
    int personCode() const { return static_cast<int>(conv::Val(header(Value::PersonCode))); }
};

Adjudicator::Adjudicator(Payers payers, History& history,
                         std::function<QString(const QString&)> describe)
    : payers_(std::move(payers)), history_(history), describe_(std::move(describe)) {}

Outcome Adjudicator::rejected(const QString& code, const QString& detail) const {
    Outcome outcome;
    outcome.status = u'R';
    outcome.rejects = {code};
    outcome.message = describe_(code).toUpper();
    if (!detail.isEmpty()) outcome.message += QStringLiteral(" - ") + detail;
    return outcome;
}

Answer Adjudicator::adjudicate(const Transmission& transmission, const QDate& received) {
    Context context{transmission};
    context.fixed = transmission.family == Family::Fixed;
    Answer answer;
    std::optional<Outcome> headerOutcome;
    if (transmission.problem) {
        headerOutcome =
            rejected(transmission.problem->code, transmission.problem->reason.toUpper());
    } else {
        headerOutcome = headerReject(context);
    }
    if (headerOutcome) {
        answer.headerRejected = true;
        for (int i = 0; i < transmission.groups; ++i) {
            answer.outcomes.append(*headerOutcome);
            if (i < transmission.claims.size()) {
                answer.outcomes.last().rxNumber = transmission.claims[i].text(Value::RxNumber);
            }
        }
        return answer;
    }
    for (const Claim& claim : transmission.claims) {
        Outcome outcome = transmission.reversal ? reversal(context, claim)
                                                : this->claim(context, claim, received);
        outcome.rxNumber = claim.text(Value::RxNumber);
        outcome.planId = context.plan->planId;
        outcome.helpDesk = context.plan->helpDesk;
        answer.outcomes.append(outcome);
    }
    return answer;
}

// The plan of the BIN and PCN, and whether it takes this layout: a header rejection when
// not. The transmission's version decides for the fixed layouts; every 5.1 header says
// "51" by its structure.
std::optional<Outcome> Adjudicator::headerReject(Context& context) const {
    const QString bin = context.header(Value::Bin);
    const QString pcn = context.header(Value::Pcn);
    bool binKnown = false;
    for (const Plan& plan : payers_.plans) {
        binKnown = binKnown || plan.bin == bin;
        if (plan.bin == bin && plan.pcn == pcn) context.plan = &plan;
    }
    if (!allDigits(bin) || !binKnown) return rejected(QStringLiteral("01"), bin);
    if (context.header(Value::Version).isEmpty()) return rejected(QStringLiteral("02"));
    if (context.plan == nullptr) return rejected(QStringLiteral("04"), pcn);
    const QString layout = context.fixed ? context.header(Value::Version) : QStringLiteral("51");
    if (!context.plan->layouts.contains(layout)) return rejected(QStringLiteral("1R"), layout);
    return std::nullopt;
}

// The member and the claim's own values.
std::optional<Outcome> Adjudicator::claimReject(const Context& context, const Claim& claim) const {
    const Plan& plan = *context.plan;
    const QString group = context.header(Value::GroupId);
    if (plan.group && group.isEmpty()) return rejected(QStringLiteral("06"));
    if (plan.group && group != *plan.group) return rejected(QStringLiteral("51"), group);
    const QString card = context.header(Value::CardholderId);
    if (card.isEmpty()) return rejected(QStringLiteral("07"));
    if (!dayOf(context.header(Value::DateOfService)).isValid())
        return rejected(QStringLiteral("15"));
    const QString birth = context.header(Value::DateOfBirth);
    if (!allDigits(birth) || birth.size() != 8) return rejected(QStringLiteral("09"));
    if (!allDigits(claim.text(Value::RxNumber).trimmed())) return rejected(QStringLiteral("16"));
    const QString product = claim.text(Value::Product).trimmed();
    const QString qualifier = claim.text(Value::ProductQualifier);
    const bool ndc = context.fixed || qualifier == kNdcQualifier;
    if (product.isEmpty() || (ndc && !allDigits(product))) return rejected(QStringLiteral("21"));
    if (!claim.number(Value::Quantity)) return rejected(QStringLiteral("E7"));
    if (!claim.number(Value::DaysSupply)) return rejected(QStringLiteral("19"));
    if (plan.anyMember) return std::nullopt;
    bool cardFound = false;
    for (const Member& member : plan.members) {
        if (member.cardholderId != card) continue;
        cardFound = true;
        if (member.personCode != context.personCode()) continue;
        if (member.dateOfBirth != birth) return rejected(QStringLiteral("09"), birth);
        if (!member.covered) return rejected(QStringLiteral("65"));
        return std::nullopt;
    }
    return rejected(cardFound ? QStringLiteral("53") : QStringLiteral("52"), card);
}

Outcome Adjudicator::claim(const Context& context, const Claim& claim, const QDate& received) {
    HistoryClaim kept;
    kept.key = context.keyOf(claim);
    kept.cardholderId = context.header(Value::CardholderId);
    kept.personCode = context.personCode();
    kept.product = claim.text(Value::Product).trimmed();
    kept.quantity = claim.number(Value::Quantity).value_or(0);
    kept.daysSupply = static_cast<int>(claim.number(Value::DaysSupply).value_or(0));
    kept.prescriberId = claim.text(Value::PrescriberId).trimmed();
    Outcome outcome;
    if (std::optional<Outcome> reject = claimReject(context, claim)) {
        outcome = *reject;
    } else if (const std::optional<HistoryClaim> prior = history_.paid(kept.key)) {
        // Already paid: the original answer again, as a duplicate.
        outcome.status = u'D';
        outcome.reference = prior->reference;
        outcome.amounts = prior->amounts;
        outcome.message = QStringLiteral("CLAIM PREVIOUSLY PAID");
    } else {
        const QList<HistoryClaim> memberClaims =
            history_.memberClaims(kept.key.bin, kept.cardholderId, kept.personCode);
        QList<DurFinding> findings;
        const std::optional<Outcome> decided = ruleOutcome(context, claim, memberClaims, findings);
        outcome = decided && decided->status == u'R' ? *decided : priced(context, claim);
        if (decided && decided->status == u'C' && outcome.status == u'P') {
            outcome.status = u'C';
            outcome.message = decided->message;
        }
        outcome.findings = findings;
    }
    kept.status = outcome.status;
    kept.rejects = outcome.rejects;
    kept.reference = outcome.reference;
    kept.amounts = outcome.amounts;
    history_.record(kept, received);
    if (outcome.status != u'R') outcome.reference = kept.reference;
    return outcome;
}

// The plan's rules in order: the first that decides (a reject or a capture) ends the
// search; interaction findings gather on the way.
std::optional<Outcome> Adjudicator::ruleOutcome(const Context& context, const Claim& claim,
                                                const QList<HistoryClaim>& memberClaims,
                                                QList<DurFinding>& findings) const {
    const QString product = claim.text(Value::Product).trimmed();
    const QDate serviceDay = dayOf(context.header(Value::DateOfService));
    const double quantity = claim.number(Value::Quantity).value_or(0);
    const double daysSupply = claim.number(Value::DaysSupply).value_or(0);
    for (const PlanRule& rule : context.plan->rules) {
        if (rule.kind != RuleKind::Interaction && !applies(rule, claim)) continue;
        switch (rule.kind) {
            case RuleKind::NotCovered:
                return rejected(QStringLiteral("70"));
            case RuleKind::Reject:
                return rejected(rule.code);
            case RuleKind::Duplicate83:
                return rejected(QStringLiteral("83"));
            case RuleKind::Capture: {
                Outcome captured;
                captured.status = u'C';
                captured.message = QStringLiteral("CLAIM CAPTURED. HELD FOR REVIEW. CALL THE PLAN");
                return captured;
            }
            case RuleKind::PriorAuthorization:
                if (claim.number(Value::PriorAuthorization).value_or(0) > 0) break;
                return rejected(QStringLiteral("75"));
            case RuleKind::Limits:
                if (rule.maxQuantity && quantity > *rule.maxQuantity) {
                    return rejected(QStringLiteral("76"),
                                    QStringLiteral("QUANTITY OVER %1").arg(*rule.maxQuantity));
                }
                if (rule.maxDaysSupply && daysSupply > *rule.maxDaysSupply) {
                    return rejected(QStringLiteral("76"),
                                    QStringLiteral("DAYS SUPPLY OVER %1").arg(*rule.maxDaysSupply));
                }
                break;
            case RuleKind::RefillTooSoon:
                for (const HistoryClaim& earlier : memberClaims) {
                    if (earlier.product != product) continue;
                    const qint64 days = static_cast<qint64>(
                        std::ceil(earlier.daysSupply * rule.percentUsed / 100.0));
                    const QDate next = dayOf(earlier.key.dateOfService).addDays(days);
                    if (serviceDay < next) {
                        return rejected(QStringLiteral("79"),
                                        QStringLiteral("NEXT FILL ") + next.toString(kDay));
                    }
                    break;
                }
                break;
            case RuleKind::Interaction: {
                if (!rule.products.contains(product)) break;
                const QString other = rule.products.at(rule.products.at(0) == product ? 1 : 0);
                for (const HistoryClaim& earlier : memberClaims) {
                    const QDate filled = dayOf(earlier.key.dateOfService);
                    const qint64 supply = std::max(1, earlier.daysSupply);
                    if (earlier.product != other || serviceDay < filled ||
                        serviceDay >= filled.addDays(supply)) {
                        continue;
                    }
                    findings.append(
                        {QString(kInteraction), rule.severity,
                         earlier.key.pharmacyId == context.header(Value::PharmacyId) ? 1 : 3,
                         earlier.key.dateOfService, earlier.quantity, 4,
                         earlier.prescriberId == claim.text(Value::PrescriberId).trimmed() ? 1 : 2,
                         payers_.drugs.value(other).name});
                    if (rule.rejectInteraction) {
                        return rejected(QStringLiteral("88"), QStringLiteral("INTERACTS WITH ") +
                                                                  payers_.drugs.value(other).name);
                    }
                    break;
                }
                break;
            }
        }
    }
    return std::nullopt;
}

Outcome Adjudicator::priced(const Context& context, const Claim& claim) const {
    const Plan& plan = *context.plan;
    const qint64 submitted =
        static_cast<qint64>(std::llround(claim.number(Value::IngredientCost).value_or(0)));
    Outcome outcome;
    outcome.status = u'P';
    outcome.amounts.ingredientCost = plan.pricing.awpLessPercent
                                         ? percentOf(submitted, 100 - *plan.pricing.awpLessPercent)
                                         : submitted;
    outcome.amounts.dispensingFee = plan.pricing.dispensingFee;
    outcome.amounts.salesTax =
        percentOf(outcome.amounts.ingredientCost + outcome.amounts.dispensingFee,
                  plan.pricing.salesTaxPercent);
    const qint64 gross =
        outcome.amounts.ingredientCost + outcome.amounts.dispensingFee + outcome.amounts.salesTax;
    const PatientPay& pay = plan.patientPay;
    const bool generic = payers_.drugs.value(claim.text(Value::Product).trimmed()).generic;
    outcome.coinsurance = pay.coinsurancePercent.has_value();
    const qint64 patientPay = outcome.coinsurance ? percentOf(gross, *pay.coinsurancePercent)
                                                  : (generic ? pay.genericCopay : pay.brandCopay);
    outcome.amounts.patientPay = std::min(patientPay, gross);
    outcome.amounts.totalPaid = gross - outcome.amounts.patientPay;
    const bool fits = std::max({outcome.amounts.ingredientCost, outcome.amounts.dispensingFee,
                                outcome.amounts.salesTax, outcome.amounts.patientPay,
                                outcome.amounts.totalPaid}) <= kLargestFixedAmount;
    if (context.fixed && !fits)
        return rejected(QStringLiteral("78"), QStringLiteral("AMOUNT TOO LARGE"));
    return outcome;
}

Outcome Adjudicator::reversal(const Context& context, const Claim& claim) {
    ClaimKey key = context.keyOf(claim);
    const std::optional<HistoryClaim> paid = history_.reversible(key);
    if (!paid) {
        return rejected(QStringLiteral("87"),
                        QStringLiteral("NO PAID CLAIM FOR RX ") + key.rxNumber);
    }
    history_.markReversed(paid->id);
    Outcome outcome;
    outcome.status = u'A';
    outcome.reference = paid->reference;
    outcome.message = QStringLiteral("REVERSAL ACCEPTED FOR RX ") + key.rxNumber;
    return outcome;
}

}  // namespace tvrx::sw
