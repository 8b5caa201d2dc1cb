#include "NotationFile.h"

#include "InputFile.h"

#include "responses/ResponseJson.h"
#include "session/text/ClaimNotation.h"

namespace tvrx::cli {

// Every program reads notation files the one way the decoder does: the bytes as Latin-1,
// a line that starts with "#" a comment, line breaks only wrapping the text.
NotationFile readNotationFile(const QString& path) {
    const InputFile file = readInputFile(path);
    if (!file.bytes) return {std::nullopt, file.error};
    NotationResult read = readResponseText(*file.bytes);
    if (!read) return {std::nullopt, QStringLiteral("%1: %2").arg(inputName(path), read.error)};
    return {std::move(read.text), {}};
}

}  // namespace tvrx::cli
