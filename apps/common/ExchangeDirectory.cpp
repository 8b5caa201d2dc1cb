#include "ExchangeDirectory.h"

#include <QFileInfo>

namespace tvrx::cli {

QString exchangeDirectoryProblem(const QString& directory) {
    const QFileInfo info(directory);
    if (!info.exists()) {
        return QStringLiteral("the exchange directory %1 does not exist").arg(directory);
    }
    if (!info.isDir()) return QStringLiteral("%1 is not a directory").arg(directory);
    if (!info.isWritable()) {
        return QStringLiteral("cannot write in the exchange directory %1").arg(directory);
    }
    return {};
}

}  // namespace tvrx::cli
