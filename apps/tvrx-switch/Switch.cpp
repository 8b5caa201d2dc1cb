#include "Switch.h"

#include "claims/ClaimExchange.h"
#include "session/runtime/Failure.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>

namespace tvrx::sw {

namespace {

const QString kRequestExtension = QStringLiteral(".clm");
const QString kResponseExtension = QStringLiteral(".RSP");
const QString kCollectedExtension = QStringLiteral(".taken");
const QString kTemporaryExtension = QStringLiteral(".tmp");
constexpr int kPollMilliseconds = 1000;

bool isRequest(const QString& name) {
    return name.endsWith(kRequestExtension, Qt::CaseInsensitive) &&
           !name.startsWith(QLatin1Char('.'));
}

QString systemError(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

}  // namespace

Switch::Switch(QString directory, Answering answer, unsigned responseMode, std::FILE* log)
    : directory_(std::move(directory)),
      answer_(std::move(answer)),
      responseMode_(responseMode),
      log_(log),
      watch_(directory_, isRequest) {}

bool Switch::start() {
    const bool watching = watch_.start([this](const QString& name) { take(name); });
    for (const QString& name : watch_.present()) take(name);
    QObject::connect(&poll_, &QTimer::timeout, &poll_, [this] {
        watch_.readEvents();
        for (const QString& name : watch_.poll()) take(name);
    });
    poll_.start(kPollMilliseconds);
    return watching;
}

QString Switch::pathOf(const QString& name) const {
    return QDir(directory_).filePath(name);
}

void Switch::take(const QString& name) {
    const QString collected = pathOf(QLatin1Char('.') + name + kCollectedExtension);
    if (::rename(QFile::encodeName(pathOf(name)).constData(),
                 QFile::encodeName(collected).constData()) != 0) {
        // Gone already: withdrawn by the library, or collected on an earlier notice.
        const int error = errno;
        if (error != ENOENT) {
            logProblem(name + QStringLiteral(": cannot collect: ") + systemError(error));
        }
        return;
    }
    QFile request(collected);
    if (!request.open(QIODevice::ReadOnly)) {
        logProblem(name + QStringLiteral(": cannot read, kept as ") + collected);
        return;
    }
    const QByteArray bytes = request.readAll();
    request.close();
    const QString stem = name.chopped(kRequestExtension.size());
    const QString response = stem + kResponseExtension;
    Reply reply;
    try {
        reply = answer_(bytes);
        writeFileAtomically(pathOf(response),
                            pathOf(QLatin1Char('.') + response + kTemporaryExtension),
                            reply.response, responseMode_);
    } catch (const Failure& failure) {
        logProblem(QStringLiteral("%1: not answered (%2), kept as %3")
                       .arg(name, failure.description(), collected));
        return;
    }
    if (!QFile::remove(collected)) {
        logProblem(name + QStringLiteral(": answered, but cannot delete ") + collected);
    }
    logLine(QStringLiteral("%1 (%2 bytes) -> %3 %4")
                .arg(name)
                .arg(bytes.size())
                .arg(response, reply.note));
}

void Switch::logLine(const QString& text) {
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("HH:mm:ss"));
    std::fprintf(log_, "%s %s\n", qPrintable(time), qPrintable(text));
    std::fflush(log_);
}

void Switch::logProblem(const QString& text) {
    logLine(QStringLiteral("problem: ") + text);
}

}  // namespace tvrx::sw
