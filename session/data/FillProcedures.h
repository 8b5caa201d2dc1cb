#pragma once

#include "session/data/Procedures.h"

#include <utility>
#include <vector>

namespace tvrx {

// The server procedures that create fills and hand out prescription and refill numbers:
//
//     spr_NewRxNewNumber(@RPhID, out @RxNumber)  a new original fill under the next number;
//                                                returns its RXInfoID
//     MaxRxNumber()                              the highest Number of all fills, 0 if none
//     MaxRefill(Number)                          the highest RefillNumber of that number
//     NewRefill(25 values)                       a refill row as the refill rules made it;
//                                                returns its RXInfoID
//
// Deleted and voided fills count in the highest numbers, so a number once handed out is
// never handed out again.
std::vector<std::pair<const char*, Procedures::Procedure>> fillProcedures();

// The columns NewRefill fills, in the order of its arguments.
const std::vector<const char*>& newRefillColumns();

}  // namespace tvrx
