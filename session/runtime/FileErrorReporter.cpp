#include "session/runtime/FileErrorReporter.h"

#include "session/runtime/AppConfig.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Session.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace tvrx {

namespace {

constexpr auto kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QString timestamp() {
    return mdlMain::clock().now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

}  // namespace

FileErrorReporter::FileErrorReporter(QString logPath) : logPath_(std::move(logPath)) {
    if (logPath_.isEmpty()) {
        logPath_ = appConfig().DataFolder + QStringLiteral("/tvrx-errors.log");
    }
}

void FileErrorReporter::ReportError(const QString& description, const QString& number,
                                    const QString& source, qint32 line, const QString& location,
                                    const QString& details, bool flag1, bool flag2, bool flag3,
                                    bool flag4) {
    QJsonObject entry{
        {QStringLiteral("time"), timestamp()},
        {QStringLiteral("store"), storeName()},
        {QStringLiteral("description"), description},
        {QStringLiteral("number"), number},
        {QStringLiteral("source"), source},
        {QStringLiteral("line"), line},
        {QStringLiteral("location"), location},
        {QStringLiteral("details"), details},
        {QStringLiteral("flags"), QJsonArray{flag1, flag2, flag3, flag4}},
    };
    // The statement a database failure came from goes to the log only, beside the
    // arguments the host sees.
    const QString statement = reportedStatement();
    if (!statement.isEmpty()) entry.insert(QStringLiteral("statement"), statement);
    appendLine(QJsonDocument(entry).toJson(QJsonDocument::Compact));
    if (echo_) {
        std::fprintf(stderr, "error: %s: %s %s\n", qPrintable(location), qPrintable(number),
                     qPrintable(description));
    }
}

void FileErrorReporter::appendComments(const QString& comments) {
    QJsonObject entry{{QStringLiteral("time"), timestamp()},
                      {QStringLiteral("store"), storeName()},
                      {QStringLiteral("comments"), comments}};
    appendLine(QJsonDocument(entry).toJson(QJsonDocument::Compact));
}

void FileErrorReporter::appendLine(const QByteArray& json) {
    QDir().mkpath(QFileInfo(logPath_).absolutePath());
    QFile file(logPath_);
    // The permissions apply when the log is created, before anything is written to it.
    if (!file.open(QIODevice::Append | QIODevice::WriteOnly, kOwnerOnly)) return;
    file.write(json);
    file.write("\n");
}

}  // namespace tvrx
