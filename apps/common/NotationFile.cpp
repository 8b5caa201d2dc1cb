#include "NotationFile.h"

#include "InputFile.h"

#include "session/text/ClaimNotation.h"

namespace tvrx::cli {

NotationFile readNotationFile(const QString& path) {
    const InputFile file = readInputFile(path);
    if (!file.bytes) return {std::nullopt, file.error};
    QString notation = QString::fromUtf8(*file.bytes);
    notation.remove(QLatin1Char('\r'));
    notation.remove(QLatin1Char('\n'));
    NotationResult read = fromNotation(notation);
    if (!read) return {std::nullopt, QStringLiteral("%1: %2").arg(inputName(path), read.error)};
    return {std::move(read.text), {}};
}

}  // namespace tvrx::cli
