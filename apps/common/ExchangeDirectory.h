#pragma once

#include <QString>

namespace tvrx::cli {

// Why a path cannot serve as the exchange directory (missing, not a directory, not
// writable), naming it; empty when it can.
QString exchangeDirectoryProblem(const QString& directory);

}  // namespace tvrx::cli
