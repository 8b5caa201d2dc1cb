#include "prescription/RXImageFolder.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tvrx {

namespace {

QString askTheUser(const QString& prompt) {
    return mdlMain::user().InputBox(prompt, QStringLiteral("Scan Prescription"), QString());
}

}  // namespace

RXImageFolder::RXImageFolder(QString folder, Picker picker)
    : folder_(std::move(folder)), picker_(picker ? std::move(picker) : Picker(askTheUser)) {}

void RXImageFolder::InitLibrary(const QString& connection, qint32 number) {
    connection_ = connection;
    number_ = number;
}

QString RXImageFolder::GetRXImage(const QString& /*applicationDirectory*/) {
    return imageOf(number_);
}

void RXImageFolder::ShowScanForm() {
    const QString chosen =
        picker_(QStringLiteral("Image file of prescription %1").arg(number_)).trimmed();
    if (chosen.isEmpty()) return;
    const QFileInfo source(chosen);
    if (!source.isFile()) fail(err::FileNotFound);
    if (!QDir().mkpath(folder_)) fail(err::PathNotFound);
    const QString target =
        QDir(folder_).filePath(QString::number(number_) + u'.' + source.suffix().toLower());
    const QString earlier = imageOf(number_);
    if (earlier == source.absoluteFilePath()) return;
    if (!earlier.isEmpty() && !QFile::remove(earlier)) fail(err::PathFileAccessError);
    if (!QFile::copy(source.absoluteFilePath(), target)) fail(err::PathFileAccessError);
}

// The first file named after the number, whatever its kind of image.
QString RXImageFolder::imageOf(qint32 number) const {
    const QFileInfoList images = QDir(folder_).entryInfoList(
        {QString::number(number) + QStringLiteral(".*")}, QDir::Files, QDir::Name);
    return images.isEmpty() ? QString() : images.first().absoluteFilePath();
}

}  // namespace tvrx
