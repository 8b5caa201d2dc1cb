#pragma once

#include "session/data/Dialect.h"
#include "session/data/RecordSet.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <optional>

namespace tvrx {

// The working half of a DbConnection: the Qt connection, the statement primitives and the
// mapping of database errors onto the platform's numbers. Updatable record sets keep a
// link so that they can write their rows after the statement that opened them.
class ConnectionLink {
public:
    ConnectionLink();
    ~ConnectionLink();
    ConnectionLink(const ConnectionLink&) = delete;
    ConnectionLink& operator=(const ConnectionLink&) = delete;

    const QString& connectionString() const { return connectionString_; }
    // Fails with 3705 while the connection is open.
    void setConnectionString(const QString& text);
    bool readOnly = false;
    int commandTimeout = 30;

    void open();
    void close();
    bool isOpen() const { return open_; }
    Backend backend() const { return dialect_.backend(); }
    const Dialect& dialect() const { return dialect_; }
    const QString& name() const { return name_; }

    qint64 execute(const QString& sql, const QVariantList& params);
    RecordSet openRecordSet(const QString& sql, const QVariantList& params);
    RecordSet openUpdatable(const std::shared_ptr<ConnectionLink>& self, const QString& table,
                            const QString& columns, const QString& condition,
                            const QVariantList& params);

    void failNextStatement(long number) { injected_ = number; }
    qint64 statementsRun() const { return statementsRun_; }
    qint64 openings() const { return openings_; }

private:
    QSqlQuery& run(const QString& sql, const QVariantList& params);
    QSqlQuery newQuery() const;
    QSqlQuery& preparedQuery(const QString& sql);
    void requireUsable();
    void takeInjectedFailure(const QString& sql);
    [[noreturn]] void raise(const QSqlError& error, const QString& sql);
    bool linkIsDown() const;
    void readRows(QSqlQuery& query, RecordSet& result);

    QString connectionString_;
    QString name_;
    Dialect dialect_{Backend::SQLite};
    bool open_ = false;
    // Closed by a lost link rather than by Close(): statements keep failing as lost.
    bool lost_ = false;
    std::optional<long> injected_;
    qint64 statementsRun_ = 0;
    qint64 openings_ = 0;
    // Statements with values, prepared once per connection and run again with new values:
    // a fill's read and save run the same dozen statements every time.
    QHash<QString, QSqlQuery> prepared_;
    // The latest statement without values, kept until the next one.
    QSqlQuery oneOff_;
};

}  // namespace tvrx
