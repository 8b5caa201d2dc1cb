// Reading the payer file: JSON, checked member by member, every problem naming where it is.
#include "Payers.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace tvrx::sw {

namespace {

// A value that does not fit, with the JSON path of the value.
struct SchemaError {
    QString path;
    QString reason;
};

const QHash<QString, RuleKind> kRuleKinds{
    {QStringLiteral("not-covered"), RuleKind::NotCovered},
    {QStringLiteral("prior-authorization"), RuleKind::PriorAuthorization},
    {QStringLiteral("limits"), RuleKind::Limits},
    {QStringLiteral("refill-too-soon"), RuleKind::RefillTooSoon},
    {QStringLiteral("interaction"), RuleKind::Interaction},
    {QStringLiteral("reject"), RuleKind::Reject},
    {QStringLiteral("duplicate-83"), RuleKind::Duplicate83},
    {QStringLiteral("capture"), RuleKind::Capture},
};

// One value of the file and its path; each reading checks the value's kind.
class Node {
public:
    Node(QJsonValue value, QString path) : value_(std::move(value)), path_(std::move(path)) {}

    [[noreturn]] void wrong(const QString& reason) const { throw SchemaError{path_, reason}; }

    // The members of an object, which must be among those named.
    Node object(const QStringList& allowed) const {
        if (!value_.isObject()) wrong(QStringLiteral("must be an object"));
        for (const QString& key : value_.toObject().keys()) {
            if (!allowed.contains(key)) member(key).wrong(QStringLiteral("is not a member here"));
        }
        return *this;
    }
    bool has(const QString& key) const { return value_.toObject().contains(key); }
    Node member(const QString& key) const {
        return {value_.toObject().value(key), path_ + u'.' + key};
    }
    Node required(const QString& key) const {
        if (!has(key)) member(key).wrong(QStringLiteral("is required"));
        return member(key);
    }

    QList<Node> items() const {
        if (!value_.isArray()) wrong(QStringLiteral("must be an array"));
        QList<Node> list;
        const QJsonArray array = value_.toArray();
        for (qsizetype i = 0; i < array.size(); ++i) {
            list.append({array.at(i), QStringLiteral("%1[%2]").arg(path_).arg(i)});
        }
        return list;
    }
    QString text() const {
        if (!value_.isString()) wrong(QStringLiteral("must be a text"));
        return value_.toString();
    }
    QString nonEmptyText() const {
        QString value = text().trimmed();
        if (value.isEmpty()) wrong(QStringLiteral("must not be empty"));
        return value;
    }
    QString digits(int length) const {
        QString value = text();
        const bool allDigits =
            std::all_of(value.cbegin(), value.cend(), [](QChar c) { return c.isDigit(); });
        if (value.size() != length || !allDigits) {
            wrong(QStringLiteral("must be %1 digits").arg(length));
        }
        return value;
    }
    QStringList texts() const {
        QStringList list;
        for (const Node& item : items()) list.append(item.nonEmptyText());
        return list;
    }
    bool boolean() const {
        if (!value_.isBool()) wrong(QStringLiteral("must be true or false"));
        return value_.toBool();
    }
    double number(double low, double high) const {
        if (!value_.isDouble()) wrong(QStringLiteral("must be a number"));
        const double value = value_.toDouble();
        if (value < low || value > high) {
            wrong(QStringLiteral("must be from %1 to %2").arg(low).arg(high));
        }
        return value;
    }
    int whole(int low, int high) const {
        const double value = number(low, high);
        if (value != std::floor(value)) wrong(QStringLiteral("must be a whole number"));
        return static_cast<int>(value);
    }
    // Dollars and cents, as a number such as 2.50, in whole cents.
    qint64 amount() const {
        const double cents = number(0, 99999999) * 100;
        if (std::abs(cents - std::round(cents)) > 1e-6) {
            wrong(QStringLiteral("must be an amount in dollars and cents"));
        }
        return static_cast<qint64>(std::llround(cents));
    }
    bool isText() const { return value_.isString(); }

private:
    QJsonValue value_;
    QString path_;
};

Drug drugOf(const Node& node) {
    const Node item = node.object({"product", "name", "generic"});
    Drug drug{item.required("product").nonEmptyText(), item.required("name").nonEmptyText()};
    if (item.has("generic")) drug.generic = item.member("generic").boolean();
    return drug;
}

Member memberOf(const Node& node) {
    const Node item = node.object({"cardholderId", "personCode", "dateOfBirth", "name", "covered",
                                   "coveredFrom", "coveredThrough", "payerOrder"});
    Member member;
    member.cardholderId = item.required("cardholderId").nonEmptyText();
    member.personCode = item.required("personCode").digits(2).toInt();
    member.dateOfBirth = item.required("dateOfBirth").digits(8);
    if (item.has("name")) member.name = item.member("name").text();
    if (item.has("covered")) member.covered = item.member("covered").boolean();
    if (item.has("coveredFrom")) member.coveredFrom = item.member("coveredFrom").digits(8);
    if (item.has("coveredThrough")) member.coveredThrough = item.member("coveredThrough").digits(8);
    if (item.has("payerOrder")) member.payerOrder = item.member("payerOrder").whole(1, 9);
    return member;
}

Pricing pricingOf(const Node& node) {
    const Node item = node.object({"awpLessPercent", "dispensingFee", "salesTaxPercent"});
    Pricing pricing;
    if (item.has("awpLessPercent"))
        pricing.awpLessPercent = item.member("awpLessPercent").number(0, 100);
    pricing.dispensingFee = item.required("dispensingFee").amount();
    if (item.has("salesTaxPercent")) {
        pricing.salesTaxPercent = item.member("salesTaxPercent").number(0, 100);
    }
    return pricing;
}

PatientPay patientPayOf(const Node& node) {
    const Node item = node.object({"brandCopay", "genericCopay", "coinsurancePercent"});
    PatientPay pay;
    if (item.has("coinsurancePercent")) {
        if (item.has("brandCopay") || item.has("genericCopay")) {
            item.wrong(QStringLiteral("takes copays or a coinsurance percentage, not both"));
        }
        pay.coinsurancePercent = item.member("coinsurancePercent").number(0, 100);
        return pay;
    }
    pay.brandCopay = item.required("brandCopay").amount();
    pay.genericCopay = item.required("genericCopay").amount();
    return pay;
}

PlanRule ruleOf(const Node& node, const std::function<bool(const QString&)>& knownRejectCode) {
    const Node item = node.object({"rule", "products", "rxNumbers", "code", "maxQuantity",
                                   "maxDaysSupply", "percentUsed", "answer", "severity"});
    const Node kindNode = item.required("rule");
    const QString kind = kindNode.text();
    if (!kRuleKinds.contains(kind)) {
        kindNode.wrong(QStringLiteral("must be one of %1").arg(kRuleKinds.keys().join(u", ")));
    }
    PlanRule rule;
    rule.kind = kRuleKinds.value(kind);
    if (item.has("products")) rule.products = item.member("products").texts();
    if (item.has("rxNumbers")) rule.rxNumbers = item.member("rxNumbers").texts();
    switch (rule.kind) {
        case RuleKind::Reject: {
            const Node code = item.required("code");
            rule.code = code.nonEmptyText();
            if (!knownRejectCode(rule.code)) code.wrong(QStringLiteral("is not a reject code"));
            break;
        }
        case RuleKind::Limits:
            if (item.has("maxQuantity"))
                rule.maxQuantity = item.member("maxQuantity").number(0, 1e9);
            if (item.has("maxDaysSupply")) {
                rule.maxDaysSupply = item.member("maxDaysSupply").whole(0, 999);
            }
            if (!rule.maxQuantity && !rule.maxDaysSupply) {
                item.wrong(QStringLiteral("needs maxQuantity or maxDaysSupply"));
            }
            break;
        case RuleKind::RefillTooSoon:
            if (item.has("percentUsed"))
                rule.percentUsed = item.member("percentUsed").whole(1, 100);
            break;
        case RuleKind::Interaction: {
            if (rule.products.size() != 2) {
                item.member("products")
                    .wrong(QStringLiteral("must name the two products that interact"));
            }
            const QString answer = item.required("answer").text();
            if (answer != QLatin1String("finding") && answer != QLatin1String("reject")) {
                item.member("answer").wrong(QStringLiteral("must be \"finding\" or \"reject\""));
            }
            rule.rejectInteraction = answer == QLatin1String("reject");
            if (item.has("severity")) rule.severity = item.member("severity").whole(1, 3);
            break;
        }
        default:
            break;
    }
    return rule;
}

Plan planOf(const Node& node, const std::function<bool(const QString&)>& knownRejectCode) {
    const Node item = node.object({"name", "bin", "pcn", "group", "layouts", "members", "pricing",
                                   "patientPay", "rules", "planId", "helpDesk", "medicare"});
    Plan plan;
    plan.name = item.required("name").nonEmptyText();
    plan.bin = item.required("bin").digits(6);
    plan.pcn = item.required("pcn").text().trimmed();
    if (item.has("group")) plan.group = item.member("group").text().trimmed();
    plan.layouts = item.required("layouts").texts();
    if (plan.layouts.isEmpty()) item.member("layouts").wrong(QStringLiteral("must name a layout"));
    const Node members = item.required("members");
    if (members.isText()) {
        if (members.text() != QLatin1String("any")) {
            members.wrong(QStringLiteral("must be \"any\" or a list of members"));
        }
        plan.anyMember = true;
    } else {
        for (const Node& member : members.items()) plan.members.append(memberOf(member));
    }
    plan.pricing = pricingOf(item.required("pricing"));
    plan.patientPay = patientPayOf(item.required("patientPay"));
    if (item.has("rules")) {
        for (const Node& rule : item.member("rules").items()) {
            plan.rules.append(ruleOf(rule, knownRejectCode));
        }
    }
    if (item.has("planId")) plan.planId = item.member("planId").text();
    if (item.has("helpDesk")) plan.helpDesk = item.member("helpDesk").digits(10);
    if (item.has("medicare")) plan.medicare = item.member("medicare").boolean();
    return plan;
}

// Line and column (from 1) of a character offset in the file's bytes.
QString whereIs(const QByteArray& bytes, int offset) {
    const QByteArray before = bytes.left(offset);
    const qsizetype lineStart = before.lastIndexOf('\n') + 1;
    return QStringLiteral("line %1, column %2")
        .arg(before.count('\n') + 1)
        .arg(offset - lineStart + 1);
}

}  // namespace

PayerFileResult loadPayerFile(const QString& path,
                              const std::function<bool(const QString&)>& knownRejectCode) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {std::nullopt, QStringLiteral("cannot read %1: %2").arg(path, file.errorString())};
    }
    const QByteArray bytes = file.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        return {std::nullopt, QStringLiteral("%1: %2: %3")
                                  .arg(path, whereIs(bytes, error.offset), error.errorString())};
    }
    try {
        const Node root =
            Node(document.isObject() ? QJsonValue(document.object()) : QJsonValue(document.array()),
                 QStringLiteral("$"))
                .object({"drugs", "plans"});
        Payers payers;
        if (root.has("drugs")) {
            for (const Node& item : root.member("drugs").items()) {
                const Drug drug = drugOf(item);
                payers.drugs.insert(drug.product, drug);
            }
        }
        for (const Node& item : root.required("plans").items()) {
            payers.plans.append(planOf(item, knownRejectCode));
        }
        return {payers, {}};
    } catch (const SchemaError& wrong) {
        return {std::nullopt, QStringLiteral("%1: %2: %3").arg(path, wrong.path, wrong.reason)};
    }
}

}  // namespace tvrx::sw
