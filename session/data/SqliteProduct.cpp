#include "session/data/DatabaseProduct.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlResult>

#include <sqlite3.h>

namespace tvrx {

namespace {

// SQLite primary result codes the layer distinguishes.
constexpr int kSqliteBusy = 5;
constexpr int kSqliteLocked = 6;
constexpr int kSqliteIoError = 10;
constexpr int kSqliteCantOpen = 14;
constexpr int kSqliteConstraint = 19;

// "sqlite:///var/lib/pharmacy.db", "sqlite:pharmacy.db" or a bare path.
QString sqlitePath(const QString& text) {
    if (text.startsWith(QLatin1String("sqlite://"), Qt::CaseInsensitive)) return text.mid(9);
    if (text.startsWith(QLatin1String("sqlite:"), Qt::CaseInsensitive)) return text.mid(7);
    return text;
}

class SqliteProduct : public DatabaseProduct {
public:
    void open(const QString& connectionName, const QString& connectionString,
              const OpenSettings& settings) const override {
        const QString path = sqlitePath(connectionString);
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
        db.setDatabaseName(path);
        QStringList options{
            QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(settings.commandTimeout * 1000)};
        if (settings.readOnly) options.append(QStringLiteral("QSQLITE_OPEN_READONLY"));
        db.setConnectOptions(options.join(QLatin1Char(';')));
        if (!db.open()) {
            fail(err::LostLink,
                 QStringLiteral("Cannot open the database file %1: %2")
                     .arg(path, databaseText(db.lastError())),
                 Dialect(Backend::SQLite).name());
        }
    }

    QList<SetUpStatement> setUp(const OpenSettings& settings) const override {
        // Write-ahead logging lets a second connection (the catalogue's, another
        // workstation's) read while one writes.
        if (settings.readOnly) return {};
        return {{QStringLiteral("PRAGMA journal_mode=WAL"), {}}};
    }

    long failureNumber(const QString& nativeCode) const override {
        switch (nativeCode.toInt() & 0xff) {
            case kSqliteBusy:
            case kSqliteLocked:
                return err::TimedOut;
            case kSqliteConstraint:
                return err::ConstraintViolated;
            case kSqliteIoError:
            case kSqliteCantOpen:
                return err::LostLink;
            default:
                return err::StatementError;
        }
    }

    QString errorText(const QSqlError& error) const override { return databaseText(error); }

    QString codeName() const override { return QStringLiteral("SQLite error"); }

    // A file has no link to lose but the ones its error codes name.
    bool linkIsDown(const QSqlDatabase&) const override { return false; }

    bool readsForwardOnly() const override { return true; }

    ColumnTime columnTime(const QSqlQuery& query, int column) const override {
        const QVariant handle = query.result()->handle();
        if (qstrcmp(handle.typeName(), "sqlite3_stmt*") != 0) return ColumnTime::MaybeText;
        sqlite3_stmt* statement = *static_cast<sqlite3_stmt* const*>(handle.constData());
        const char* declared = statement ? sqlite3_column_decltype(statement, column) : nullptr;
        // An expression (MAX(Date), the server time) has no declared type: its text form
        // tells whether it is a date-time.
        if (declared == nullptr) return ColumnTime::MaybeText;
        const QString type = QString::fromLatin1(declared).toUpper();
        if (type.contains(QLatin1String("DATE")) || type.contains(QLatin1String("TIME"))) {
            return ColumnTime::StoredText;
        }
        return ColumnTime::None;
    }
};

}  // namespace

const DatabaseProduct& sqliteProduct() {
    static const SqliteProduct product;
    return product;
}

}  // namespace tvrx
