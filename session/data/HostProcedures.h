#pragma once

#include "session/data/Procedures.h"

#include <utility>
#include <vector>

namespace tvrx {

// The server procedures behind the catalogue's commands that only a host runs (its patient
// and prescriber searches, lists of a patient's fills, the price tables, a new patient or
// fill row). The library itself never calls them; each is one statement with its values
// bound, listed with its arguments in docs/SCHEMA.md.
std::vector<std::pair<const char*, Procedures::Procedure>> hostProcedures();

}  // namespace tvrx
