#pragma once

#include "session/data/Dialect.h"

#include <QList>
#include <QString>
#include <QVariantList>

class QSqlDatabase;
class QSqlError;
class QSqlQuery;

namespace tvrx {

// How a result column holds date-times, so that both back ends read them alike.
enum class ColumnTime {
    None,        // not a date-time
    Typed,       // the driver gives a QDateTime
    StoredText,  // a date-time column kept as "yyyy-MM-dd HH:mm:ss" text
    MaybeText,   // an expression: a date-time when its text has that form
};

// What a connection sets when it opens.
struct OpenSettings {
    bool readOnly = false;
    int commandTimeout = 30;  // seconds
};

// One statement a connection runs right after it opens.
struct SetUpStatement {
    QString sql;
    QVariantList params;
};

// What a connection does the way its database product wants it: opening, setting up the
// session, naming and numbering its errors, and reading results. The Dialect of a
// connection gives its product; ConnectionLink asks it and never the back end's name.
class DatabaseProduct {
public:
    virtual ~DatabaseProduct() = default;

    // Adds the Qt connection of this name for the connection string and opens it;
    // fails with the lost-link number when it cannot.
    virtual void open(const QString& connectionName, const QString& connectionString,
                      const OpenSettings& settings) const = 0;
    // The statements run after every open.
    virtual QList<SetUpStatement> setUp(const OpenSettings& settings) const = 0;

    // The platform's failure number for the database's own code of an error.
    virtual long failureNumber(const QString& nativeCode) const = 0;
    // The database's text of an error for a failure's description. The statement itself
    // is never part of it: it goes to the error log on its own.
    virtual QString errorText(const QSqlError& error) const = 0;
    // What the database's error codes are called in a description: "SQLSTATE".
    virtual QString codeName() const = 0;
    // Whether the link to the server is gone, asked when an error does not say so.
    virtual bool linkIsDown(const QSqlDatabase& database) const = 0;

    // Whether a result is read row by row, forward only, rather than fetched whole.
    virtual bool readsForwardOnly() const = 0;
    // How the result column holds date-times.
    virtual ColumnTime columnTime(const QSqlQuery& query, int column) const = 0;
};

const DatabaseProduct& sqliteProduct();
const DatabaseProduct& postgresProduct();

// The database's text of an error, without PostgreSQL's trailing "(SQLSTATE)", which the
// connection adds back in one form for both back ends.
QString databaseText(const QSqlError& error);

}  // namespace tvrx
