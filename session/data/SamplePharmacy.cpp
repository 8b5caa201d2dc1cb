#include "session/data/SamplePharmacy.h"

#include "session/data/DbConnection.h"
#include "session/data/EmbeddedFiles.h"
#include "session/data/Schema.h"
#include "session/data/TabSeparated.h"
#include "session/data/Transaction.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QVariantList>

namespace tvrx {

namespace {

struct SampleTable {
    QString table;
    QString text;
};

std::vector<SampleTable> sampleFiles() {
    std::vector<SampleTable> files;
    for (const EmbeddedFile& file : samplePharmacyFiles()) {
        QString table = QString::fromUtf8(file.name.data(), qsizetype(file.name.size()));
        table.chop(4);  // ".tsv"
        files.push_back({table, QString::fromUtf8(file.text.data(), qsizetype(file.text.size()))});
    }
    return files;
}

bool holdsRows(DbConnection& connection, const QString& table) {
    return connection.Scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)).toLongLong() > 0;
}

// The sample writes its own keys. SQLite's key counter follows every key written, but a
// PostgreSQL identity keeps counting from 1 until it is told where the keys stand, and the
// next new patient would then collide with a sample one.
void catchUpKeyNumbering(DbConnection& connection, const QString& table) {
    if (connection.backend() != Backend::PostgreSQL) return;
    const QVariant key =
        connection.Scalar(QStringLiteral("SELECT column_name FROM information_schema.columns WHERE "
                                         "table_schema = current_schema() "
                                         "AND table_name = ? AND is_identity = 'YES'"),
                          {table.toLower()});
    if (key.isNull()) return;
    connection.Scalar(QStringLiteral("SELECT setval(pg_get_serial_sequence(?, ?), MAX(%1)) FROM %2")
                          .arg(key.toString(), table),
                      {table.toLower(), key.toString()});
}

int loadAll(DbConnection& connection, const std::vector<SampleTable>& files) {
    int rows = 0;
    for (const SampleTable& file : files) {
        rows += loadTabSeparated(connection, file.table, file.text);
        catchUpKeyNumbering(connection, file.table);
    }
    return rows;
}

}  // namespace

QStringList sampleTables() {
    QStringList tables;
    for (const SampleTable& file : sampleFiles()) tables << file.table;
    return tables;
}

int loadTabSeparated(DbConnection& connection, const QString& table, const QString& text) {
    const TabSeparated tsv = parseTabSeparated(text);
    if (!tsv.error.isEmpty()) fail(err::StatementError, table + QStringLiteral(": ") + tsv.error);
    const QStringList marks(tsv.columns.size(), QStringLiteral("?"));
    const QString insert =
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(table, tsv.columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    for (const QStringList& row : tsv.rows) {
        QVariantList values;
        for (const QString& field : row) values << (field.isEmpty() ? QVariant() : QVariant(field));
        connection.Execute(insert, values);
    }
    return int(tsv.rows.size());
}

SampleLoad loadSamplePharmacy(DbConnection& connection) {
    const std::vector<SampleTable> files = sampleFiles();
    SampleLoad result;
    for (const SampleTable& file : files) {
        if (!holdsRows(connection, file.table)) continue;
        result.occupiedTable = file.table;
        return result;
    }
    Transaction transaction(connection);
    result.rows = loadAll(connection, files);
    transaction.commit();
    result.loaded = true;
    return result;
}

}  // namespace tvrx
