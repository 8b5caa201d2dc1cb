#include "session/data/ConnectionLink.h"

#include "session/data/TableRegistry.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QAtomicInteger>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>
#include <QSqlResult>
#include <QTimeZone>
#include <QUrl>
#include <QUrlQuery>

#include <libpq-fe.h>
#include <sqlite3.h>

namespace tvrx {

namespace {

// More distinct statements than a session runs again and again: past this the prepared
// ones are let go and prepared anew as they come.
constexpr qsizetype kPreparedStatements = 256;

// A statement without values that is not a query may change the schema, which plans
// prepared before it would not survive on PostgreSQL.
bool startsWithWord(const QString& sql, QStringView word) {
    return QStringView(sql).trimmed().startsWith(word, Qt::CaseInsensitive);
}

QAtomicInteger<quint64> nextConnectionNumber;

// SQLite primary result codes the layer distinguishes.
constexpr int kSqliteBusy = 5;
constexpr int kSqliteLocked = 6;
constexpr int kSqliteIoError = 10;
constexpr int kSqliteCantOpen = 14;
constexpr int kSqliteConstraint = 19;

// How a result column holds date-times, so that both back ends read them alike.
enum class ColumnTime { None, Typed, StoredText, MaybeText };

bool isPostgresUrl(const QString& text) {
    return text.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive) ||
           text.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive);
}

QString sqlitePath(const QString& text) {
    if (text.startsWith(QLatin1String("sqlite://"), Qt::CaseInsensitive)) return text.mid(9);
    if (text.startsWith(QLatin1String("sqlite:"), Qt::CaseInsensitive)) return text.mid(7);
    return text;
}

long numberForPostgres(const QString& state) {
    if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P"))) {
        return err::LostLink;
    }
    if (state == QLatin1String("57014")) return err::TimedOut;
    if (state.startsWith(QLatin1String("23"))) return err::ConstraintViolated;
    return err::StatementError;
}

long numberForSqlite(int code) {
    switch (code & 0xff) {
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

// The database's text without PostgreSQL's trailing "(SQLSTATE)", which is added back in
// one form for both back ends.
QString databaseText(const QSqlError& error) {
    QString text = error.databaseText().trimmed();
    if (text.isEmpty()) text = error.driverText().trimmed();
    const QString suffix = QStringLiteral("(%1)").arg(error.nativeErrorCode());
    if (text.endsWith(suffix)) text.chop(suffix.size());
    return text.trimmed();
}

ColumnTime sqliteColumnTime(const QSqlQuery& query, int column) {
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

QVariant normalised(const QVariant& value, ColumnTime time) {
    if (!value.isValid() || value.isNull()) return QVariant();
    switch (value.typeId()) {
        case QMetaType::ULongLong:
            return value.toLongLong();
        case QMetaType::QDateTime: {
            // Qt reads PostgreSQL's timestamp as local wall-clock time already; only the
            // milliseconds are dropped, as the columns hold whole seconds.
            const QDateTime at = value.toDateTime();
            const QTime t = at.time();
            return QDateTime(at.date(), QTime(t.hour(), t.minute(), t.second()));
        }
        case QMetaType::QString: {
            if (time != ColumnTime::StoredText && time != ColumnTime::MaybeText) return value;
            const QDateTime at = Dialect::dateTimeFromText(value.toString());
            return at.isValid() ? QVariant(at) : value;
        }
        default:
            return value;
    }
}

}  // namespace

ConnectionLink::ConnectionLink()
    : name_(QStringLiteral("tvrx-connection-%1").arg(nextConnectionNumber.fetchAndAddRelaxed(1))) {}

ConnectionLink::~ConnectionLink() {
    close();
    if (QSqlDatabase::contains(name_)) QSqlDatabase::removeDatabase(name_);
}

void ConnectionLink::setConnectionString(const QString& text) {
    if (open_) fail(err::ObjectOpen);
    connectionString_ = text;
    dialect_ = Dialect(isPostgresUrl(text.trimmed()) ? Backend::PostgreSQL : Backend::SQLite);
}

void ConnectionLink::open() {
    if (open_) fail(err::ObjectOpen);
    const QString text = connectionString_.trimmed();
    if (text.isEmpty()) fail(err::LostLink, QStringLiteral("No connection string was given."));
    if (QSqlDatabase::contains(name_)) QSqlDatabase::removeDatabase(name_);
    if (isPostgresUrl(text)) {
        openPostgres(text);
    } else {
        openSqlite(sqlitePath(text));
    }
    open_ = true;
    lost_ = false;
    ++openings_;
    try {
        afterOpen();
    } catch (...) {
        close();
        throw;
    }
}

void ConnectionLink::openSqlite(const QString& path) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
    db.setDatabaseName(path);
    QStringList options{QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(commandTimeout * 1000)};
    if (readOnly) options.append(QStringLiteral("QSQLITE_OPEN_READONLY"));
    db.setConnectOptions(options.join(QLatin1Char(';')));
    if (!db.open()) {
        fail(err::LostLink,
             QStringLiteral("Cannot open the database file %1: %2")
                 .arg(path, databaseText(db.lastError())),
             dialect_.name());
    }
}

void ConnectionLink::openPostgres(const QString& text) {
    const QUrl url(text);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name_);
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
        fail(err::LostLink, databaseText(db.lastError()), dialect_.name());
    }
}

void ConnectionLink::afterOpen() {
    if (backend() == Backend::SQLite) {
        // Write-ahead logging lets a second connection (the catalogue's, another
        // workstation's) read while one writes.
        if (!readOnly) execute(QStringLiteral("PRAGMA journal_mode=WAL"), {});
        return;
    }
    // Date-times are the pharmacy's wall-clock time: the server's local time must be
    // the machine's.
    const QString zone = QString::fromUtf8(QTimeZone::systemTimeZoneId());
    execute(QStringLiteral("SELECT set_config('TimeZone', ?, false)"), {zone});
    execute(QStringLiteral("SELECT set_config('statement_timeout', ?, false)"),
            {QString::number(commandTimeout * 1000)});
    // The server's notices ("drop cascades to ...") are of no use to the pharmacy.
    execute(QStringLiteral("SELECT set_config('client_min_messages', 'warning', false)"), {});
}

void ConnectionLink::close() {
    if (!open_) return;
    open_ = false;
    prepared_.clear();
    oneOff_ = QSqlQuery();
    QSqlDatabase::database(name_, false).close();
}

void ConnectionLink::requireUsable() {
    if (open_) return;
    if (lost_) fail(err::LostLink, QStringLiteral("The connection to the database was lost."));
    fail(err::ConnectionUnusable);
}

void ConnectionLink::takeInjectedFailure() {
    if (!injected_) return;
    const long number = *injected_;
    injected_.reset();
    if (number == err::LostLink) {
        close();
        lost_ = true;
    }
    fail(number, {}, QStringLiteral("test hook"));
}

bool ConnectionLink::linkIsDown() const {
    if (backend() != Backend::PostgreSQL) return false;
    const QVariant handle = QSqlDatabase::database(name_, false).driver()->handle();
    if (qstrcmp(handle.typeName(), "PGconn*") != 0) return false;
    const PGconn* connection = *static_cast<PGconn* const*>(handle.constData());
    return connection == nullptr || PQstatus(connection) == CONNECTION_BAD;
}

void ConnectionLink::raise(const QSqlError& error) {
    const QString code = error.nativeErrorCode();
    long number =
        backend() == Backend::PostgreSQL ? numberForPostgres(code) : numberForSqlite(code.toInt());
    // A dropped socket comes without an SQL state: ask the driver's handle.
    if (number != err::LostLink && linkIsDown()) number = err::LostLink;
    const QString kind = backend() == Backend::PostgreSQL ? QStringLiteral("SQLSTATE")
                                                          : QStringLiteral("SQLite error");
    const QString description =
        QStringLiteral("%1 [%2 %3]")
            .arg(databaseText(error), kind, code.isEmpty() ? QStringLiteral("none") : code);
    if (number == err::LostLink) {
        close();
        lost_ = true;
    }
    fail(number, description, dialect_.name());
}

QSqlQuery& ConnectionLink::run(const QString& sql, const QVariantList& params) {
    requireUsable();
    takeInjectedFailure();
    ++statementsRun_;
    if (params.isEmpty()) {
        if (!startsWithWord(sql, u"SELECT")) prepared_.clear();
        oneOff_ = newQuery();
        if (!oneOff_.exec(sql)) raise(oneOff_.lastError());
        return oneOff_;
    }
    QSqlQuery& query = preparedQuery(sql);
    for (int i = 0; i < params.size(); ++i) query.bindValue(i, Dialect::bindable(params.at(i)));
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        prepared_.remove(sql);
        raise(error);
    }
    return query;
}

QSqlQuery ConnectionLink::newQuery() const {
    QSqlQuery query(QSqlDatabase::database(name_, false));
    // PostgreSQL results are fetched whole (no single-row mode), SQLite's row by row.
    query.setForwardOnly(backend() == Backend::SQLite);
    query.setNumericalPrecisionPolicy(QSql::LowPrecisionDouble);
    return query;
}

QSqlQuery& ConnectionLink::preparedQuery(const QString& sql) {
    auto found = prepared_.find(sql);
    if (found != prepared_.end()) return *found;
    if (prepared_.size() >= kPreparedStatements) prepared_.clear();
    QSqlQuery query = newQuery();
    if (!query.prepare(sql)) raise(query.lastError());
    return *prepared_.emplace(sql, std::move(query));
}

qint64 ConnectionLink::execute(const QString& sql, const QVariantList& params) {
    QSqlQuery& query = run(sql, params);
    const qint64 changed = query.numRowsAffected();
    query.finish();
    return changed;
}

void ConnectionLink::readRows(QSqlQuery& query, RecordSet& result) {
    const QSqlRecord record = query.record();
    std::vector<ColumnTime> times;
    for (int i = 0; i < record.count(); ++i) {
        result.allNames_.append(record.fieldName(i));
        times.push_back(backend() == Backend::SQLite ? sqliteColumnTime(query, i)
                                                     : ColumnTime::Typed);
    }
    while (query.next()) {
        RecordSet::Row row;
        for (int i = 0; i < record.count(); ++i) {
            row.values.append(normalised(query.value(i), times[static_cast<size_t>(i)]));
        }
        result.rows_.push_back(std::move(row));
    }
    if (query.lastError().isValid()) raise(query.lastError());
    result.names_ = result.allNames_;
    result.open_ = true;
    result.position_ = 0;
}

RecordSet ConnectionLink::openRecordSet(const QString& sql, const QVariantList& params) {
    QSqlQuery& query = run(sql, params);
    RecordSet result;
    readRows(query, result);
    // A statement left unfinished would hold SQLite's read lock until it ran again.
    query.finish();
    return result;
}

RecordSet ConnectionLink::openUpdatable(const std::shared_ptr<ConnectionLink>& self,
                                        const QString& table, const QString& columns,
                                        const QString& condition, const QVariantList& params) {
    requireUsable();
    QString key = TableRegistry::keyColumn(table);
    if (key.isEmpty()) {
        const QSqlIndex primary =
            QSqlDatabase::database(name_, false).primaryIndex(dialect_.catalogName(table));
        if (primary.count() == 1) key = primary.fieldName(0);
    }
    if (key.isEmpty()) {
        fail(err::NotUpdatable,
             QStringLiteral("Table %1 has no key column to update its rows by.").arg(table));
    }
    bool selectsKey = columns.trimmed() == QLatin1String("*");
    for (const QString& column : columns.split(QLatin1Char(','))) {
        const QString bare = column.trimmed().section(QLatin1Char('.'), -1);
        selectsKey = selectsKey || bare.compare(key, Qt::CaseInsensitive) == 0;
    }
    QString sql = QStringLiteral("SELECT %1%2 FROM %3")
                      .arg(columns, selectsKey ? QString() : QStringLiteral(", ") + key, table);
    if (!condition.trimmed().isEmpty()) sql += QStringLiteral(" WHERE ") + condition;
    RecordSet result = openRecordSet(sql, params);
    if (!selectsKey) result.names_.removeLast();
    for (int i = 0; i < result.allNames_.size(); ++i) {
        if (result.allNames_.at(i).compare(key, Qt::CaseInsensitive) == 0) result.keyIndex_ = i;
    }
    result.link_ = self;
    result.table_ = table;
    result.bitColumns_ = TableRegistry::bitColumns(table);
    result.changed_.assign(static_cast<size_t>(result.allNames_.size()), false);
    return result;
}

}  // namespace tvrx
