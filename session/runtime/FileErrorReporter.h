#pragma once

#include "session/runtime/ErrorReporter.h"

#include <QString>

namespace tvrx {

// The default reporter: one JSON line per report in the error log of the application's
// data folder, and a one-line summary on stderr. The log is readable by its owner only,
// because a report's details can hold claim text with patient data.
class FileErrorReporter : public ErrorReporterBase {
public:
    // An empty path means "tvrx-errors.log" in the configured data folder.
    explicit FileErrorReporter(QString logPath = {});

    void ReportError(const QString& description, const QString& number, const QString& source,
                     qint32 line, const QString& location, const QString& details, bool flag1,
                     bool flag2, bool flag3, bool flag4) override;

    // Adds the user's comments on the last report (the error screen's "Send Error").
    void appendComments(const QString& comments);

    const QString& logPath() const { return logPath_; }
    void setEchoToStderr(bool echo) { echo_ = echo; }

private:
    void appendLine(const QByteArray& json);

    QString logPath_;
    bool echo_ = true;
};

}  // namespace tvrx
