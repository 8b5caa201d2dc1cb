#pragma once

#include <QtGlobal>

namespace tvrx::mdlMain {

// The price of a base amount by price table lPT. A table has a key row, which says
// whether the base is the AWP or the cost and whether its bands are chosen by that base
// or by the quantity, and bands by break point: each band covers the values from the
// break point before it (0 for the first) up to but not including its own, and prices the
// base as base times its multiplier plus its addend. A value in no band (above every break
// point, or negative) takes the last band. Nothing is rounded.
//
// The tables are read from the pharmacy's database, or from the alternate price source
// when the session uses it (Wrapper.UseAltSource), whose tables are named differently.
//
// lPT below 1 becomes lDefaultPT, in the caller's variable. With no table at all the user
// is told how to report it, the failure "Error getting price table" is reported, and the
// price is 0; a table without a key row or without bands is a box and 0. dAddend receives
// the addend of the band used.
//
// A host that shows how a price came about passes `used`: it receives the band taken.
struct PriceBand {
    double from = 0;        // the break point of the band before it, 0 for the first
    double breakPoint = 0;  // its own
    double multiplier = 0;
    double addend = 0;
    bool last = false;  // taken as the last band: no band held the value
};
double GetPrice(qint32& lPT, double dAWP, double dCost, double& dAddend, qint32 lDefaultPT,
                double dQty, PriceBand* used = nullptr);

}  // namespace tvrx::mdlMain
