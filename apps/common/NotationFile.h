#pragma once

#include <QString>

#include <optional>

namespace tvrx::cli {

// A claim or response text kept in a file in the readable notation, read as Latin-1. A
// line that starts with "#" is a comment. Line breaks in the file only wrap long texts and
// are not part of it: the bytes 13 and 10 of a text are written <CR> and <LF>. The path
// "-" reads standard input.
struct NotationFile {
    std::optional<QString> text;
    QString error;  // what is wrong with the file, naming it, when there is no text
};

NotationFile readNotationFile(const QString& path);

}  // namespace tvrx::cli
