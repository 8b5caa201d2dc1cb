#include "session/data/ConnectionLink.h"

#include "session/data/DatabaseProduct.h"
#include "session/data/TableRegistry.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QAtomicInteger>
#include <QSqlError>
#include <QSqlIndex>
#include <QSqlRecord>

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
    dialect_ = Dialect::forConnectionString(text);
}

void ConnectionLink::open() {
    if (open_) fail(err::ObjectOpen);
    const QString text = connectionString_.trimmed();
    if (text.isEmpty()) fail(err::LostLink, QStringLiteral("No connection string was given."));
    if (QSqlDatabase::contains(name_)) QSqlDatabase::removeDatabase(name_);
    const OpenSettings settings{readOnly, commandTimeout};
    dialect_.product().open(name_, text, settings);
    open_ = true;
    lost_ = false;
    ++openings_;
    try {
        for (const SetUpStatement& statement : dialect_.product().setUp(settings))
            execute(statement.sql, statement.params);
    } catch (...) {
        close();
        throw;
    }
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

void ConnectionLink::takeInjectedFailure(const QString& sql) {
    if (!injected_) return;
    const long number = *injected_;
    injected_.reset();
    if (number == err::LostLink) {
        close();
        lost_ = true;
    }
    Failure failure(number, {}, QStringLiteral("test hook"));
    failure.setStatement(sql);
    throw failure;
}

bool ConnectionLink::linkIsDown() const {
    return dialect_.product().linkIsDown(QSqlDatabase::database(name_, false));
}

void ConnectionLink::raise(const QSqlError& error, const QString& sql) {
    const QString code = error.nativeErrorCode();
    long number = dialect_.product().failureNumber(code);
    if (number != err::LostLink && linkIsDown()) number = err::LostLink;
    const QString description =
        QStringLiteral("%1 [%2 %3]")
            .arg(dialect_.product().errorText(error), dialect_.product().codeName(),
                 code.isEmpty() ? QStringLiteral("none") : code);
    if (number == err::LostLink) {
        close();
        lost_ = true;
    }
    Failure failure(number, description, dialect_.name());
    failure.setStatement(sql);
    throw failure;
}

QSqlQuery& ConnectionLink::run(const QString& sql, const QVariantList& params) {
    requireUsable();
    takeInjectedFailure(sql);
    ++statementsRun_;
    if (params.isEmpty()) {
        if (!startsWithWord(sql, u"SELECT")) prepared_.clear();
        oneOff_ = newQuery();
        if (!oneOff_.exec(sql)) raise(oneOff_.lastError(), sql);
        return oneOff_;
    }
    QSqlQuery& query = preparedQuery(sql);
    for (int i = 0; i < params.size(); ++i) query.bindValue(i, Dialect::bindable(params.at(i)));
    if (!query.exec()) {
        const QSqlError error = query.lastError();
        prepared_.remove(sql);
        raise(error, sql);
    }
    return query;
}

QSqlQuery ConnectionLink::newQuery() const {
    QSqlQuery query(QSqlDatabase::database(name_, false));
    query.setForwardOnly(dialect_.product().readsForwardOnly());
    query.setNumericalPrecisionPolicy(QSql::LowPrecisionDouble);
    return query;
}

QSqlQuery& ConnectionLink::preparedQuery(const QString& sql) {
    auto found = prepared_.find(sql);
    if (found != prepared_.end()) return *found;
    if (prepared_.size() >= kPreparedStatements) prepared_.clear();
    QSqlQuery query = newQuery();
    if (!query.prepare(sql)) raise(query.lastError(), sql);
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
        times.push_back(dialect_.product().columnTime(query, i));
    }
    while (query.next()) {
        RecordSet::Row row;
        for (int i = 0; i < record.count(); ++i) {
            row.values.append(normalised(query.value(i), times[static_cast<size_t>(i)]));
        }
        result.rows_.push_back(std::move(row));
    }
    if (query.lastError().isValid()) raise(query.lastError(), query.lastQuery());
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
