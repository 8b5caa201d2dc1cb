#include "session/data/DbConnection.h"

#include "session/data/ConnectionLink.h"

#include <QUrl>
#include <QUrlQuery>

namespace tvrx {

DbConnection::DbConnection() : link_(std::make_shared<ConnectionLink>()) {}

DbConnection::DbConnection(const QString& connectionString) : DbConnection() {
    link_->setConnectionString(connectionString);
}

DbConnection::~DbConnection() {
    link_->close();
}

QString DbConnection::ConnectionString() const {
    return link_->connectionString();
}

void DbConnection::setConnectionString(const QString& connectionString) {
    link_->setConnectionString(connectionString);
}

void DbConnection::setReadOnly(bool readOnly) {
    link_->readOnly = readOnly;
}

bool DbConnection::readOnly() const {
    return link_->readOnly;
}

void DbConnection::setCommandTimeout(int seconds) {
    link_->commandTimeout = seconds;
}

int DbConnection::commandTimeout() const {
    return link_->commandTimeout;
}

void DbConnection::Open() {
    link_->open();
}

void DbConnection::Close() {
    link_->close();
}

int DbConnection::State() const {
    return link_->isOpen() ? 1 : 0;
}

Backend DbConnection::backend() const {
    return link_->backend();
}

const Dialect& DbConnection::dialect() const {
    return link_->dialect();
}

QString DbConnection::name() const {
    return link_->name();
}

qint64 DbConnection::Execute(const QString& sql, const QVariantList& params) {
    return link_->execute(sql, params);
}

RecordSet DbConnection::OpenRecordSet(const QString& sql, const QVariantList& params) {
    return link_->openRecordSet(sql, params);
}

QVariant DbConnection::Scalar(const QString& sql, const QVariantList& params) {
    RecordSet result = link_->openRecordSet(sql, params);
    if (result.Eof() || result.FieldCount() == 0) return QVariant();
    return result.Fields(0);
}

RecordSet DbConnection::OpenUpdatable(const QString& table, const QString& columns,
                                      const QString& condition, const QVariantList& params) {
    return link_->openUpdatable(link_, table, columns, condition, params);
}

qint64 DbConnection::statementsRun() const {
    return link_->statementsRun();
}

qint64 DbConnection::openings() const {
    return link_->openings();
}

void DbConnection::failNextStatement(long number) {
    link_->failNextStatement(number);
}

QString withoutPassword(const QString& connectionString) {
    QUrl url(connectionString);
    if (url.scheme().isEmpty() || !url.isValid()) return connectionString;
    QUrlQuery query(url);
    query.removeAllQueryItems(QStringLiteral("password"));
    url.setQuery(query);
    return url.toString(QUrl::RemovePassword);
}

}  // namespace tvrx
