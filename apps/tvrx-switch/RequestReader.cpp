#include "RequestReader.h"

#include "HeadCut.h"
#include "claims/ClaimReader.h"
#include "claims/Layouts.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <cmath>

namespace tvrx::sw {

namespace {

using claims::ReadField;

// How a value's characters become its number.
enum class Unit {
    Text,         // no number
    Whole,        // digits as they stand: a quantity in units, days
    Cents,        // digits in whole cents
    Punched,      // an over-punched amount in dollars and cents
    Thousandths,  // digits in thousandths of a unit
    PriorAuth,    // the type (one character), then the number
};

// Where a value stands: an item of a fixed head by its name in the layout, or an
// identified field by its code.
struct Source {
    Value value;
    const char* headItem;
    const char* code;
    Unit unit;
};

// The fixed layouts ("32", "3B", "40", "3C" and the default) and their reversals.
constexpr Source kFixedSources[] = {
    {Value::Bin, "Bank identification number", nullptr, Unit::Text},
    {Value::Version, "Version", nullptr, Unit::Text},
    {Value::TransactionCode, "Transaction code", nullptr, Unit::Text},
    {Value::Pcn, "Processor control number", nullptr, Unit::Text},
    {Value::PharmacyId, "Pharmacy ID", nullptr, Unit::Text},
    {Value::GroupId, "Group number", nullptr, Unit::Text},
    {Value::CardholderId, "Cardholder ID", nullptr, Unit::Text},
    {Value::PersonCode, "Person code", nullptr, Unit::Whole},
    {Value::DateOfBirth, "Date of birth", nullptr, Unit::Text},
    {Value::DateOfService, "Date filled", nullptr, Unit::Text},
    {Value::RxNumber, "Prescription number", nullptr, Unit::Whole},
    {Value::FillNumber, "Refill number", nullptr, Unit::Whole},
    {Value::Product, "Product ID (NDC)", nullptr, Unit::Text},
    {Value::Quantity, "Quantity dispensed", nullptr, Unit::Whole},
    {Value::DaysSupply, "Days supply", nullptr, Unit::Whole},
    {Value::IngredientCost, "Ingredient cost", nullptr, Unit::Cents},
    {Value::UsualAndCustomary, "Price", nullptr, Unit::Cents},
    {Value::PrescriberId, "Prescriber ID", nullptr, Unit::Text},
    {Value::DispensingFee, nullptr, "DC", Unit::Cents},
    {Value::GrossAmountDue, nullptr, "DU", Unit::Cents},
    {Value::PatientPaid, nullptr, "DX", Unit::Cents},
    {Value::PriorAuthorization, nullptr, "DG", Unit::PriorAuth},
};

// Version 5.1 claims and reversals.
constexpr Source kSegmentedSources[] = {
    {Value::Bin, "Bank identification number", nullptr, Unit::Text},
    {Value::Version, "Version", nullptr, Unit::Text},
    {Value::TransactionCode, "Transaction code", nullptr, Unit::Text},
    {Value::Pcn, "Processor control number", nullptr, Unit::Text},
    {Value::PharmacyId, "Service provider ID", nullptr, Unit::Text},
    {Value::DateOfService, "Date of service", nullptr, Unit::Text},
    {Value::GroupId, nullptr, "C1", Unit::Text},
    {Value::CardholderId, nullptr, "C2", Unit::Text},
    {Value::PersonCode, nullptr, "C3", Unit::Whole},
    {Value::DateOfBirth, nullptr, "C4", Unit::Text},
    {Value::RxNumber, nullptr, "D2", Unit::Whole},
    {Value::FillNumber, nullptr, "D3", Unit::Whole},
    {Value::ProductQualifier, nullptr, "E1", Unit::Text},
    {Value::Product, nullptr, "D7", Unit::Text},
    {Value::Quantity, nullptr, "E7", Unit::Thousandths},
    {Value::DaysSupply, nullptr, "D5", Unit::Whole},
    {Value::IngredientCost, nullptr, "D9", Unit::Punched},
    {Value::DispensingFee, nullptr, "DC", Unit::Punched},
    {Value::UsualAndCustomary, nullptr, "DQ", Unit::Punched},
    {Value::GrossAmountDue, nullptr, "DU", Unit::Punched},
    {Value::PatientPaid, nullptr, "DX", Unit::Punched},
    {Value::PriorAuthorization, nullptr, "EV", Unit::Whole},
    {Value::PrescriberId, nullptr, "DB", Unit::Text},
};

// The values of the transmission as a whole; the others belong to each claim.
constexpr Value kHeaderValues[] = {Value::Bin,          Value::Version,    Value::TransactionCode,
                                   Value::Pcn,          Value::PharmacyId, Value::GroupId,
                                   Value::CardholderId, Value::PersonCode, Value::DateOfBirth,
                                   Value::DateOfService};

const QLatin1StringView kClaim51("B1");
const QLatin1StringView kReversal51("B2");
const QLatin1StringView kReversalFixed("11");
// Positions (from 0) of the version and the 5.1 transaction code in a head.
constexpr qsizetype kVersionAt = 7;
constexpr qsizetype kCodeAt = 9;
constexpr qsizetype kCodeLength = 2;
// The shortest text that holds a transaction code.
constexpr qsizetype kShortestTransmission = kCodeAt + kCodeLength;

bool isControl(QChar c) {
    const char16_t u = c.unicode();
    return u == mdlMain::kFieldSeparator || u == mdlMain::kGroupSeparator ||
           u == mdlMain::kSegmentSeparator || u == mdlMain::kEndOfText;
}

bool isHeaderValue(Value value) {
    return std::find(std::begin(kHeaderValues), std::end(kHeaderValues), value) !=
           std::end(kHeaderValues);
}

// The fields of one transaction read with its layout, its fixed head cut as sent; nothing
// when the head fits no cut.
std::optional<QList<ReadField>> transactionFields(const claims::Layout& layout, QStringView text) {
    const claims::Reading reading = claims::readLayout(layout, text);
    const claims::Part& first = layout.parts.front();
    if (first.kind != claims::Part::Kind::Head) return reading.fields;
    const qsizetype start = first.lead != 0 && text.startsWith(QChar(first.lead)) ? 1 : 0;
    qsizetype end = start;
    while (end < text.size() && !isControl(text[end])) ++end;
    const std::optional<QStringList> items = cutHead(first.fields, text.sliced(start, end - start));
    if (!items) return std::nullopt;
    QList<ReadField> fields;
    for (qsizetype i = 0; i < items->size(); ++i) {
        fields.append({{}, {}, QString(first.fields[i].name), items->at(i), {}});
    }
    for (const ReadField& field : reading.fields) {
        if (!field.code.isEmpty() || !field.segment.isEmpty()) fields.append(field);
    }
    return fields;
}

const ReadField* find(const QList<ReadField>& fields, const Source& source) {
    for (const ReadField& field : fields) {
        const bool inHead = field.code.isEmpty() && field.segment.isEmpty();
        if (source.headItem != nullptr ? inHead && field.name == QLatin1String(source.headItem)
                                       : field.code == QLatin1String(source.code)) {
            return &field;
        }
    }
    return nullptr;
}

std::optional<double> numberOf(const QString& text, Unit unit) {
    switch (unit) {
        case Unit::Text:
            return std::nullopt;
        case Unit::Punched: {
            QString punched = text;
            return std::round(mdlMain::OverPunch(punched) * 100);
        }
        case Unit::PriorAuth:
            return conv::Val(text.mid(1));
        case Unit::Thousandths:
            return allDigits(text) ? std::optional(conv::Val(text) / 1000) : std::nullopt;
        default:
            return allDigits(text) ? std::optional(conv::Val(text)) : std::nullopt;
    }
}

// Takes the values of the sources from the fields, into the header or into the claim.
void take(const QList<ReadField>& fields, std::span<const Source> sources, bool header,
          QHash<Value, QString>& texts, QHash<Value, double>* numbers) {
    for (const Source& source : sources) {
        if (isHeaderValue(source.value) != header) continue;
        const ReadField* field = find(fields, source);
        if (field == nullptr) continue;
        texts.insert(source.value, field->value);
        const std::optional<double> number = numberOf(field->value, source.unit);
        if (numbers != nullptr && number) numbers->insert(source.value, *number);
    }
}

Transmission rejected(Transmission transmission, const char* code, const QString& reason) {
    transmission.problem = HeaderProblem{QString::fromLatin1(code), reason};
    transmission.claims.clear();
    return transmission;
}

// The text without the end byte, carriage return and line feed of the request file.
QString withoutTrailer(QString text) {
    for (const char16_t end : {u'\n', u'\r', mdlMain::kEndOfText}) {
        if (text.endsWith(QChar(end))) text.chop(1);
    }
    return text;
}

class Reader {
public:
    explicit Reader(const QString& request) : text_(withoutTrailer(request)) {}

    Transmission read() {
        const qsizetype firstGroup = text_.indexOf(QChar(mdlMain::kGroupSeparator));
        for (qsizetype at = firstGroup; at >= 0;) {
            const qsizetype next = text_.indexOf(QChar(mdlMain::kGroupSeparator), at + 1);
            bodies_.append(QStringView(text_).sliced(at, (next < 0 ? text_.size() : next) - at));
            at = next;
        }
        t_.groups = std::max<int>(1, static_cast<int>(bodies_.size()));
        if (text_.isEmpty()) return rejected(t_, "94", QStringLiteral("the request is empty"));
        if (!text_.startsWith(QChar(mdlMain::kStartOfText)) ||
            text_.size() < kShortestTransmission) {
            return rejected(t_, "94", QStringLiteral("the request is no transmission"));
        }
        t_.version = text_.mid(kVersionAt, 2);
        const QStringView code = QStringView(text_).sliced(kCodeAt, kCodeLength);
        const QStringView head =
            QStringView(text_).first(firstGroup < 0 ? text_.size() : firstGroup);
        if (code == kClaim51 || code == kReversal51)
            return readSegmented(code == kReversal51, head);
        return readFixed(code == kReversalFixed, head);
    }

private:
    bool bodiesSegmented(bool segmented) const {
        return std::all_of(bodies_.begin(), bodies_.end(), [&](QStringView body) {
            return (body.size() > 1 && body[1] == QChar(mdlMain::kSegmentSeparator)) == segmented;
        });
    }

    Transmission readSegmented(bool reversal, QStringView head) {
        t_.family = Family::Segmented;
        t_.reversal = reversal;
        t_.layout = QStringLiteral("51");
        if (bodies_.isEmpty() || !bodiesSegmented(true)) {
            return rejected(t_, "02",
                            QStringLiteral("a 5.1 header with bodies of the fixed layouts"));
        }
        if (reversal) return readWhole(claims::reversalLayout(t_.layout), kSegmentedSources);
        return readClaims(claims::headerLayout(t_.layout), claims::segmentedClaimLayout(), head,
                          kSegmentedSources, "Transaction count");
    }

    Transmission readFixed(bool reversal, QStringView head) {
        t_.family = Family::Fixed;
        if (!bodiesSegmented(false)) {
            return rejected(t_, "02", QStringLiteral("a fixed header with 5.1 bodies"));
        }
        if (bodies_.isEmpty()) {
            if (!reversal) return rejected(t_, "94", QStringLiteral("a header without claims"));
            t_.reversal = true;
            const claims::Layout& layout = claims::reversalLayout(t_.version);
            t_.layout = QString(layout.name);
            return readWhole(layout, kFixedSources);
        }
        const claims::Layout& body = claims::claimLayout(t_.version);
        t_.layout = QString(body.name);
        return readClaims(claims::headerLayout(t_.version), body, head, kFixedSources,
                          "Prescription count");
    }

    // A reversal: header and claim in one transaction.
    Transmission readWhole(const claims::Layout& layout, std::span<const Source> sources) {
        const std::optional<QList<ReadField>> fields = transactionFields(layout, text_);
        if (!fields) return unreadableHead();
        take(*fields, sources, true, t_.header, nullptr);
        Claim claim;
        take(*fields, sources, false, claim.values, &claim.numbers);
        t_.claims.append(claim);
        return t_;
    }

    Transmission readClaims(const claims::Layout& headerLayout, const claims::Layout& bodyLayout,
                            QStringView head, std::span<const Source> sources,
                            const char* countItem) {
        const std::optional<QList<ReadField>> header = transactionFields(headerLayout, head);
        if (!header) return unreadableHead();
        take(*header, sources, true, t_.header, nullptr);
        const Source count{Value::Bin, countItem, nullptr, Unit::Whole};
        const ReadField* counted = find(*header, count);
        if (counted == nullptr ||
            conv::Val(counted->value) != static_cast<double>(bodies_.size())) {
            return rejected(t_, "A9", QStringLiteral("the count of claims is not the count sent"));
        }
        for (const QStringView text : bodies_) {
            const std::optional<QList<ReadField>> fields = transactionFields(bodyLayout, text);
            if (!fields) return unreadableHead();
            Claim claim;
            take(*fields, sources, false, claim.values, &claim.numbers);
            t_.claims.append(claim);
        }
        return t_;
    }

    Transmission unreadableHead() {
        return rejected(t_, "94",
                        QStringLiteral("a fixed head that the %1 layout does not cut")
                            .arg(t_.layout.isEmpty() ? t_.version : t_.layout));
    }

    QString text_;
    QList<QStringView> bodies_;
    Transmission t_;
};

}  // namespace

Transmission readRequest(const QString& request) {
    return Reader(request).read();
}

}  // namespace tvrx::sw
