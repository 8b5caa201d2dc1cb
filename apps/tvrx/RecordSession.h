#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <optional>

namespace tvrx {

class DbConnection;
class RecordingErrorReporter;

namespace cli {

// The session a record command runs in: the database from --db or TVRX_DB, and a reporter
// whose reports the command prints on stderr, since a record method reports its failures
// and carries on.
class RecordSession {
public:
    // Takes "--db URL" or "--db=URL" out of args. Without it the database comes from the
    // environment variable TVRX_DB; with neither, problem says so.
    static std::optional<QString> databaseOption(QStringList& args, QString& problem);

    // A record's key as typed on the command line; when it is no whole number, nothing,
    // and problem says so.
    static std::optional<qint32> keyOption(const QString& text, QString& problem);

    explicit RecordSession(QString commandName);
    ~RecordSession();

    // Opens the database; on failure prints one line and returns null.
    std::shared_ptr<DbConnection> open(const QString& database);
    // Prints the reports made since the last call, one line each; returns how many.
    int printReports();

private:
    QString commandName_;
    std::shared_ptr<RecordingErrorReporter> reporter_;
    int printed_ = 0;
};

// A value of a record as the console shows it: texts as they are, numbers and dates in
// their default text, flags as True or False.
QString shownText(const QVariant& value);

}  // namespace cli
}  // namespace tvrx
