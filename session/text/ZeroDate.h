#pragma once

#include <QDateTime>

namespace tvrx::conv {

// The zero date, 12/30/1899 00:00:00: what a date member of a record holds until it is
// set or read.
QDateTime ZeroDate();

}  // namespace tvrx::conv
