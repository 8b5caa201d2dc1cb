#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tvrx::cli {

// The bytes of a file named on the command line, where "-" names standard input.
struct InputFile {
    std::optional<QByteArray> bytes;
    QString error;  // why it could not be read, naming it, when there are no bytes
};

InputFile readInputFile(const QString& path);

// The name messages use for such a file.
QString inputName(const QString& path);

}  // namespace tvrx::cli
