#include "NotationFile.h"

#include "session/text/ClaimNotation.h"

#include <QFile>

namespace tvrx::cli {

NotationFile readNotationFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {std::nullopt, QStringLiteral("cannot read %1: %2").arg(path, file.errorString())};
    }
    QString notation = QString::fromUtf8(file.readAll());
    notation.remove(QLatin1Char('\r'));
    notation.remove(QLatin1Char('\n'));
    NotationResult read = fromNotation(notation);
    if (!read) return {std::nullopt, QStringLiteral("%1: %2").arg(path, read.error)};
    return {std::move(read.text), {}};
}

}  // namespace tvrx::cli
