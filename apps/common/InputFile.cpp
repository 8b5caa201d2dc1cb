#include "InputFile.h"

#include <QFile>

#include <cstdio>

namespace tvrx::cli {

namespace {

bool isStandardInput(const QString& path) {
    return path == QLatin1String("-");
}

}  // namespace

InputFile readInputFile(const QString& path) {
    QFile file(path);
    const bool opened = isStandardInput(path) ? file.open(stdin, QIODevice::ReadOnly)
                                              : file.open(QIODevice::ReadOnly);
    if (!opened) {
        return {std::nullopt,
                QStringLiteral("cannot read %1: %2").arg(inputName(path), file.errorString())};
    }
    return {file.readAll(), {}};
}

QString inputName(const QString& path) {
    return isStandardInput(path) ? QStringLiteral("standard input") : path;
}

}  // namespace tvrx::cli
