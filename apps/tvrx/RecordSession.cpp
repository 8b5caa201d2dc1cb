#include "RecordSession.h"

#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/runtime/Frame.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/Session.h"

#include <QUrl>

#include <cstdio>

namespace tvrx::cli {

namespace {

// The database as messages name it, without a password.
QString shown(const QString& database) {
    const QUrl url(database);
    return url.scheme().isEmpty() ? database : url.toDisplayString(QUrl::RemovePassword);
}

}  // namespace

std::optional<QString> RecordSession::databaseOption(QStringList& args, QString& problem) {
    QString database;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--db")) {
            if (i + 1 >= args.size()) {
                problem = QStringLiteral("--db needs a database");
                return std::nullopt;
            }
            database = args[i + 1];
            args.remove(i, 2);
            --i;
        } else if (args[i].startsWith(QLatin1String("--db="))) {
            database = args[i].mid(5);
            args.remove(i);
            --i;
        }
    }
    if (database.isEmpty()) database = qEnvironmentVariable("TVRX_DB");
    if (database.isEmpty()) {
        problem = QStringLiteral("no database: give --db URL or set TVRX_DB");
        return std::nullopt;
    }
    return database;
}

std::optional<qint32> RecordSession::keyOption(const QString& text, QString& problem) {
    bool isNumber = false;
    const qint32 key = text.toInt(&isNumber);
    if (isNumber) return key;
    problem = QStringLiteral("the key '%1' is not a whole number").arg(text);
    return std::nullopt;
}

RecordSession::RecordSession(QString commandName)
    : commandName_(std::move(commandName)), reporter_(std::make_shared<RecordingErrorReporter>()) {
    mdlMain::ErrorReporter = reporter_;
}

RecordSession::~RecordSession() {
    mdlMain::resetSession();
}

std::shared_ptr<DbConnection> RecordSession::open(const QString& database) {
    auto connection = std::make_shared<DbConnection>();
    Frame frame("tvrx:Open");
    frame([&] {
        connection->setConnectionString(database);
        connection->Open();
    });
    if (connection->State() == 1) return connection;
    const QList<ErrorReport>& reports = reporter_->reports();
    std::fprintf(stderr, "tvrx %s: cannot open the database %s: %s\n", qPrintable(commandName_),
                 qPrintable(shown(database)),
                 reports.isEmpty() ? "" : qPrintable(reports.last().description.simplified()));
    printed_ = static_cast<int>(reports.size());
    return nullptr;
}

int RecordSession::printReports() {
    const QList<ErrorReport>& reports = reporter_->reports();
    const int count = static_cast<int>(reports.size()) - printed_;
    for (; printed_ < reports.size(); ++printed_) {
        const ErrorReport& report = reports.at(printed_);
        std::fprintf(stderr, "tvrx %s: %s: error %s: %s\n", qPrintable(commandName_),
                     qPrintable(report.location), qPrintable(report.number),
                     qPrintable(report.description.simplified()));
    }
    return count;
}

QString shownText(const QVariant& value) {
    return columns::textOf(value);
}

}  // namespace tvrx::cli
