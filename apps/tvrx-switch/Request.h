#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringView>

#include <algorithm>
#include <optional>

// A request as the payer reads it: the transmission's header and its claims, each value by
// what it means, as the claim sent it.
namespace tvrx::sw {

// Whether the text is one or more decimal digits and nothing else.
inline bool allDigits(QStringView text) {
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// The values the simulator reads. Texts stand as sent (blank fill included); the
// adjudication trims where it compares.
enum class Value {
    // The transmission.
    Bin,
    Version,
    TransactionCode,
    Pcn,
    PharmacyId,
    GroupId,
    CardholderId,
    PersonCode,
    DateOfBirth,
    DateOfService,
    // Each claim.
    RxNumber,
    FillNumber,
    ProductQualifier,
    Product,
    Quantity,
    DaysSupply,
    IngredientCost,
    DispensingFee,
    UsualAndCustomary,
    GrossAmountDue,
    PatientPaid,
    PriorAuthorization,
    PrescriberId,
};

enum class Family { Fixed, Segmented };

struct Claim {
    QHash<Value, QString> values;
    // Amounts in whole cents, quantities as numbers, by the layout's encoding.
    QHash<Value, double> numbers;

    QString text(Value value) const { return values.value(value); }
    std::optional<double> number(Value value) const {
        return numbers.contains(value) ? std::optional<double>(numbers.value(value)) : std::nullopt;
    }
};

// Why a whole transmission is answered with a header rejection.
struct HeaderProblem {
    QString code;  // a reject code of the reject table
    QString reason;
};

struct Transmission {
    Family family = Family::Fixed;
    bool reversal = false;
    // The version as the header gives it ("51", "32", "3C" ...), and the layout its bodies
    // were read with.
    QString version;
    QString layout;
    QHash<Value, QString> header;
    QList<Claim> claims;
    std::optional<HeaderProblem> problem;
    // How many claims the answer must hold when the header is rejected: one per group.
    int groups = 0;

    QString value(Value key) const { return header.value(key); }
};

}  // namespace tvrx::sw
