#pragma once

#include "Outcome.h"
#include "Request.h"

#include <QString>

namespace tvrx::sw {

// The response file of an answer, byte by byte as the library's response reader and decoder
// read it (docs/SIMULATOR.md, "Response files"): the family and version of the request,
// its transaction code echoed, one group per claim, then the trailer.
QString writeResponse(const Transmission& transmission, const Answer& answer);

}  // namespace tvrx::sw
