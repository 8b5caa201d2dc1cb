#pragma once

#include <QtGlobal>

namespace tvrx::wantbook {

// The packages to order to bring a drug from its stock up to its par level: the shortfall
// and the package size each rounded to a whole number (halves to even), divided with the
// remainder dropped toward zero. A package size of 0 counts as 1; a result of 0 becomes 1
// so that a line on the want list always orders something; a stock above par gives a
// negative count, kept as it is. A package size that rounds to 0 fails with 11, a count
// beyond 32 bits with 6.
qint32 packagesToOrder(double parQty, double stock, double packageSize);

}  // namespace tvrx::wantbook
