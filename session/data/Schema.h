#pragma once

#include "session/data/Dialect.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace tvrx {

class DbConnection;

// One step of the main database's schema: a file of db/schema. "003_name.sql" serves both
// back ends; "003_name.sqlite.sql" or "003_name.postgresql.sql" only the one it names, for
// the rare step (triggers) that the two products cannot share.
struct Migration {
    int version = 0;
    QString name;  // the file name without ".sql"
    QString text;  // SQL with the data layer's type tokens
};

// What applySchema found and did.
struct SchemaReport {
    int versionBefore = 0;
    int versionAfter = 0;
    QStringList applied;  // names of the migrations run, in order
};

// The migrations for a back end, by version. Fails with 0x80040E14 when two files claim
// one version for the same back end.
std::vector<Migration> schemaMigrations(Backend backend);

// Brings the database up to the newest schema: every migration above the recorded version
// runs in a transaction of its own together with its row in the table SchemaVersion.
// Running it again changes nothing. Statement failures come through as the data layer's
// Failures; the migration that failed leaves nothing behind.
SchemaReport applySchema(DbConnection& connection);

// The newest version recorded in SchemaVersion; 0 before the first migration.
int schemaVersion(DbConnection& connection);

// The tables the migrations create, in the order they first appear.
QStringList schemaTables();

// Tells the data layer the key column of every table the migrations create, so that an
// updatable record set that selects no key still finds its rows. applySchema does it; a
// program that opens a database made earlier calls it once before changing rows.
void registerSchemaTables();

// Splits schema text into statements at the semicolons that end them. Semicolons inside
// quotes, comments, dollar-quoted function bodies and BEGIN ... END trigger bodies stay.
QStringList splitStatements(const QString& text);

}  // namespace tvrx
