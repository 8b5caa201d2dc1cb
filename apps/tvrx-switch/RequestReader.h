#pragma once

#include "Request.h"

#include <QString>

namespace tvrx::sw {

// Reads a request as the library wrote it, with the claim builders' own layout tables: the
// version 5.1 header and segments by their field codes, a fixed head item by item (cut as
// sent, HeadCut.h), the identified fields of the fixed layouts by their codes. The family
// is told by the structure, not by the version field: a transaction code "B1" or "B2" at
// positions 10 and 11 and bodies made of segments is 5.1, whatever the version says (a
// 5.1 header to the other payer carries the other plan's version). The request arrives
// as the file holds it: byte 3, carriage return and line feed at its end are taken off.
//
// A transmission that cannot be read as a whole carries the header problem that answers
// it (docs/SIMULATOR.md): an empty request or a text that is no transmission "94", a header
// and bodies of different families "02", a fixed head that fits no cut "02" as well.
Transmission readRequest(const QString& request);

}  // namespace tvrx::sw
