#include "claims/ClaimExchange.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/text/Conversions.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tvrx {

namespace {

const QString kStemPicture = QStringLiteral("MMDDHHMM");
const QString kRequestExtension = QStringLiteral(".clm");
const QString kResponseExtension = QStringLiteral(".RSP");
const QString kTemporaryExtension = QStringLiteral(".tmp");
const char kEndOfText = '\x03';

std::mutex& settingsMutex() {
    static std::mutex mutex;
    return mutex;
}

ExchangeSettings& currentSettings() {
    static ExchangeSettings settings;
    return settings;
}

// The platform's number for a failed file operation: a missing folder or file is "path
// not found", anything else "path/file access error"; the system's own words follow.
[[noreturn]] void failFileOperation(const QString& path, int error) {
    const long number =
        (error == ENOENT || error == ENOTDIR) ? err::PathNotFound : err::PathFileAccessError;
    fail(number, QStringLiteral("%1: %2 (%3)")
                     .arg(Failure::standardDescription(number), path,
                          QString::fromLocal8Bit(std::strerror(error))));
}

void removeIfPresent(const QString& path) {
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT) {
        failFileOperation(path, errno);
    }
}

bool writeAll(int fd, const QByteArray& bytes) {
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t step =
            ::write(fd, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (step < 0 && errno == EINTR) continue;
        if (step < 0) return false;
        written += step;
    }
    return true;
}

// A rename is only kept through a power failure once the directory itself is on the disk.
void syncDirectoryOf(const QString& path) {
    const int fd = ::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(),
                          O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

}  // namespace

ExchangeSettings exchangeSettings() {
    std::lock_guard lock(settingsMutex());
    return currentSettings();
}

void setExchangeSettings(const ExchangeSettings& settings) {
    std::lock_guard lock(settingsMutex());
    currentSettings() = settings;
}

QString exchangePath(const QString& directory, const QString& name) {
    if (directory.endsWith(QLatin1Char('/'))) return directory + name;
    return directory + QLatin1Char('/') + name;
}

void writeFileAtomically(const QString& path, const QString& temporaryPath, const QByteArray& bytes,
                         unsigned mode) {
    const QByteArray temporary = QFile::encodeName(temporaryPath);
    const int fd = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC,
                          static_cast<mode_t>(mode));
    if (fd < 0) failFileOperation(temporaryPath, errno);
    int error = 0;
    // The mask of the process would otherwise take the group's rights away.
    if (::fchmod(fd, static_cast<mode_t>(mode)) != 0 || !writeAll(fd, bytes) || ::fsync(fd) != 0) {
        error = errno;
    }
    if (::close(fd) != 0 && error == 0) error = errno;
    if (error != 0) {
        ::unlink(temporary.constData());
        failFileOperation(temporaryPath, error);
    }
    if (::rename(temporary.constData(), QFile::encodeName(path).constData()) != 0) {
        const int renameError = errno;
        ::unlink(temporary.constData());
        failFileOperation(path, renameError);
    }
    syncDirectoryOf(path);
}

ExchangeFiles::ExchangeFiles(QString directory, const QDateTime& at)
    : directory_(std::move(directory)), stem_(conv::FormatDate(at, kStemPicture)) {}

QString ExchangeFiles::requestPath() const {
    return exchangePath(directory_, stem_ + kRequestExtension);
}

QString ExchangeFiles::responsePath() const {
    return exchangePath(directory_, stem_ + kResponseExtension);
}

QString ExchangeFiles::temporaryPath() const {
    return exchangePath(directory_,
                        QLatin1Char('.') + stem_ + kRequestExtension + kTemporaryExtension);
}

void ExchangeFiles::sendRequest(const QString& text, const ExchangeSettings& settings) const {
    QByteArray line = text.toLatin1();
    line.append(kEndOfText);
    sendLine(std::move(line), settings);
}

void ExchangeFiles::sendInquiry(const QString& text, const ExchangeSettings& settings) const {
    sendLine(text.toLatin1(), settings);
}

void ExchangeFiles::sendLine(QByteArray line, const ExchangeSettings& settings) const {
    line.append("\r\n");
    writeFileAtomically(requestPath(), temporaryPath(), line, settings.RequestMode);
}

void ExchangeFiles::withdrawRequest() const {
    removeIfPresent(requestPath());
}

void ExchangeFiles::removeTemporary() const {
    removeIfPresent(temporaryPath());
}

void ExchangeFiles::removeResponse() const {
    removeIfPresent(responsePath());
}

}  // namespace tvrx
