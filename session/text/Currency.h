#pragma once

#include <QMetaType>

namespace tvrx {

// A currency member: an amount kept to four decimal places, as its column keeps it.
// Whatever is assigned is rounded at once, a tie to the even neighbour (conv::RoundCurrency),
// so the member reads back what the database will hold. It converts to and from double
// without a cast, so prices and copays are computed as doubles, and it travels in a
// QVariant, which converts it to and from double as well.
class Currency {
public:
    Currency() = default;
    // Implicit on purpose: a currency member is assigned like the double it stands for.
    Currency(double value);                     // NOLINT(google-explicit-constructor)
    operator double() const { return value_; }  // NOLINT(google-explicit-constructor)

private:
    double value_ = 0;
};

}  // namespace tvrx

Q_DECLARE_METATYPE(tvrx::Currency)
