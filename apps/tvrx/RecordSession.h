#pragma once

#include "session/runtime/RecordingErrorReporter.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

namespace tvrx {

class DbConnection;

namespace cli {

class CommandLine;

// The session a record command runs in: the database of the command line, and a reporter
// whose reports the command prints on stderr (or puts in its JSON object), since a record
// method reports its failures and carries on.
class RecordSession {
public:
    explicit RecordSession(const CommandLine& line);
    ~RecordSession();
    RecordSession(const RecordSession&) = delete;
    RecordSession& operator=(const RecordSession&) = delete;

    // Opens the database; on failure prints one line and returns null.
    std::shared_ptr<DbConnection> open();
    // Prints the reports made since the last call, one line each; returns how many.
    int printReports();
    const QList<ErrorReport>& reports() const { return reporter_->reports(); }

private:
    const CommandLine& line_;
    std::shared_ptr<RecordingErrorReporter> reporter_;
    qsizetype printed_ = 0;
};

// A value of a record as the console shows it: texts as they are, numbers and dates in
// their default text, flags as True or False.
QString shownText(const QVariant& value);

// The database as messages name it, without a password.
QString shownDatabase(const QString& database);

// What is wrong with a key typed on the command line that is no whole number.
QString notAKey(const QString& text);

}  // namespace cli
}  // namespace tvrx
