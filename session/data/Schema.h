#pragma once

#include "session/data/Dialect.h"
#include "session/data/EmbeddedFiles.h"

#include <QString>
#include <QStringList>

#include <span>
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

// A schema of its own: the migration files that build it and the table that records which
// of them a database has. The pharmacy's database has one; the alternate price source,
// whose band table shares a name with the pharmacy's key table, has another.
struct MigrationSet {
    const char* name;
    std::span<const EmbeddedFile> (*files)();
    const char* versionTable;
};

// The pharmacy's main database (db/schema, recorded in SchemaVersion).
const MigrationSet& pharmacySchema();
// The alternate price source (db/pricesource/schema, recorded in PriceSourceVersion).
const MigrationSet& priceSourceSchema();

// What applySchema found and did.
struct SchemaReport {
    int versionBefore = 0;
    int versionAfter = 0;
    QStringList applied;  // names of the migrations run, in order
};

// The migrations for a back end, by version. Fails with 0x80040E14 when two files claim
// one version for the same back end.
std::vector<Migration> schemaMigrations(Backend backend,
                                        const MigrationSet& set = pharmacySchema());

// Brings the database up to the newest schema: every migration above the recorded version
// runs in a transaction of its own together with its row in the set's version table.
// Running it again changes nothing. Statement failures come through as the data layer's
// Failures; the migration that failed leaves nothing behind.
//
// A migration may refuse data it cannot take. The line
//     -- refuse if any row: <what is wrong and what to do>
// makes the query after it a check: when the query gives rows, the migration fails with
// 0x80040E2F, the text and the rows, and nothing of it is applied.
SchemaReport applySchema(DbConnection& connection);
SchemaReport applySchema(DbConnection& connection, const MigrationSet& set);

// The newest version recorded in the set's version table; 0 before the first migration.
int schemaVersion(DbConnection& connection, const MigrationSet& set = pharmacySchema());

// The tables the migrations create and no later one drops, in the order they first appear.
QStringList schemaTables(const MigrationSet& set = pharmacySchema());

// Tells the data layer the key column of every table the migrations create, so that an
// updatable record set that selects no key still finds its rows. applySchema does it; a
// program that opens a database made earlier calls it once before changing rows.
void registerSchemaTables();

// Splits schema text into statements at the semicolons that end them. Semicolons inside
// quotes, comments, dollar-quoted function bodies and BEGIN ... END trigger bodies stay.
QStringList splitStatements(const QString& text);

}  // namespace tvrx
