#include "session/data/DatabaseProduct.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QTimeZone>
#include <QUrl>
#include <QUrlQuery>

#include <libpq-fe.h>

namespace tvrx {

namespace {

class PostgresProduct : public DatabaseProduct {
public:
    void open(const QString& connectionName, const QString& connectionString,
              const OpenSettings&) const override {
        const QUrl url(connectionString);
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), connectionName);
        db.setUserName(url.userName());
        db.setPassword(url.password());
        db.setHostName(url.host());
        if (url.port() > 0) db.setPort(url.port());
        db.setDatabaseName(url.path().mid(1));
        QStringList options;
        bool timeoutGiven = false;
        for (const auto& [key, value] : QUrlQuery(url).queryItems(QUrl::FullyDecoded)) {
            // "?host=/socket/dir" reaches the server through its Unix socket.
            if (key == QLatin1String("host")) {
                db.setHostName(value);
                continue;
            }
            timeoutGiven = timeoutGiven || key == QLatin1String("connect_timeout");
            options.append(key + QLatin1Char('=') + value);
        }
        if (!timeoutGiven) options.append(QStringLiteral("connect_timeout=10"));
        db.setConnectOptions(options.join(QLatin1Char(';')));
        if (!db.open()) {
            fail(err::LostLink, databaseText(db.lastError()), Dialect(Backend::PostgreSQL).name());
        }
    }

    QList<SetUpStatement> setUp(const OpenSettings& settings) const override {
        return {
            // Date-times are the pharmacy's wall-clock time: the server's local time must
            // be the machine's.
            {QStringLiteral("SELECT set_config('TimeZone', ?, false)"),
             {QString::fromUtf8(QTimeZone::systemTimeZoneId())}},
            {QStringLiteral("SELECT set_config('statement_timeout', ?, false)"),
             {QString::number(settings.commandTimeout * 1000)}},
            // The server's notices ("drop cascades to ...") are of no use to the pharmacy.
            {QStringLiteral("SELECT set_config('client_min_messages', 'warning', false)"), {}},
        };
    }

    long failureNumber(const QString& state) const override {
        if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P"))) {
            return err::LostLink;
        }
        if (state == QLatin1String("57014")) return err::TimedOut;
        if (state.startsWith(QLatin1String("23"))) return err::ConstraintViolated;
        return err::StatementError;
    }

    // The server quotes a statement sent without values after its message ("LINE 1: ..."
    // and a caret under the place); the quote is cut off.
    QString errorText(const QSqlError& error) const override {
        QString text = databaseText(error);
        const qsizetype quote = text.indexOf(QLatin1String("\nLINE "));
        if (quote >= 0) text.truncate(quote);
        return text.trimmed();
    }

    QString codeName() const override { return QStringLiteral("SQLSTATE"); }

    // A dropped socket comes without an SQL state: the driver's handle knows.
    bool linkIsDown(const QSqlDatabase& database) const override {
        const QVariant handle = database.driver()->handle();
        if (qstrcmp(handle.typeName(), "PGconn*") != 0) return false;
        const PGconn* connection = *static_cast<PGconn* const*>(handle.constData());
        return connection == nullptr || PQstatus(connection) == CONNECTION_BAD;
    }

    // Qt's driver fetches a whole result at once (no single-row mode).
    bool readsForwardOnly() const override { return false; }

    // Qt reads timestamp columns as QDateTime in local wall-clock time.
    ColumnTime columnTime(const QSqlQuery&, int) const override { return ColumnTime::Typed; }
};

}  // namespace

const DatabaseProduct& postgresProduct() {
    static const PostgresProduct product;
    return product;
}

}  // namespace tvrx
