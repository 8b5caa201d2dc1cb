#include "session/text/Currency.h"

#include "session/text/Conversions.h"

namespace tvrx {

namespace {

// QVariant::toDouble() of a currency value and QVariant::value<Currency>() of a number go
// through these. This file is linked wherever a Currency is made from a number.
[[maybe_unused]] const bool kConvertsWithDouble = [] {
    QMetaType::registerConverter<Currency, double>();
    QMetaType::registerConverter<double, Currency>();
    return true;
}();

}  // namespace

Currency::Currency(double value) : value_(conv::RoundCurrency(value)) {}

}  // namespace tvrx
