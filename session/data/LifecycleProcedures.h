#pragma once

#include "session/data/Procedures.h"

#include <utility>
#include <vector>

namespace tvrx {

// The server procedures that find, void and remove fills that exist, and the one over the
// list of automatic refills:
//
//     FindRxNumber(@Number)             every column of the number's fills that are not
//                                       deleted, voided ones included, by RefillNumber
//     FindRxNumberAll(@Number)          the same with the deleted fills, so an edit can
//                                       recover them
//     VoidRefill(@Number, @Refill)      an updatable result over RXINFO: the fills of the
//                                       number from @Refill on that are not deleted, by
//                                       RefillNumber, so the first row is the fill named
//     DeleteRx(@RxInfoID)               removes that one row
//     AllAutoRefill()                   an updatable result over the list of automatic
//                                       refills, every row, by its key
std::vector<std::pair<const char*, Procedures::Procedure>> lifecycleProcedures();

}  // namespace tvrx
