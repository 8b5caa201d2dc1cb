#include "session/data/SamplePharmacy.h"

#include "session/data/DbConnection.h"
#include "session/data/EmbeddedFiles.h"
#include "session/data/Procedures.h"
#include "session/data/Schema.h"
#include "session/data/TabSeparated.h"
#include "session/data/TableRegistry.h"
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

std::vector<SampleTable> sampleFiles(std::span<const EmbeddedFile> embedded) {
    std::vector<SampleTable> files;
    for (const EmbeddedFile& file : embedded) {
        QString table = QString::fromUtf8(file.name.data(), qsizetype(file.name.size()));
        table.chop(4);  // ".tsv"
        files.push_back({table, QString::fromUtf8(file.text.data(), qsizetype(file.text.size()))});
    }
    return files;
}

bool holdsRows(DbConnection& connection, const QString& table) {
    return connection.Scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)).toLongLong() > 0;
}

// The sample writes its own keys. The new-key procedures look after themselves, but rows
// that other code adds with a plain insert (a fill's change log, a drug's dosing times)
// take the counter's next key, and a PostgreSQL counter does not follow keys written.
void catchUpKeyNumbering(DbConnection& connection, const QString& table) {
    const QString key = TableRegistry::keyColumn(table);
    if (!key.isEmpty()) Procedures::catchUpKeyCounter(connection, table, key);
}

int loadAll(DbConnection& connection, const std::vector<SampleTable>& files) {
    int rows = 0;
    for (const SampleTable& file : files) {
        rows += loadTabSeparated(connection, file.table, file.text);
        catchUpKeyNumbering(connection, file.table);
    }
    return rows;
}

// Loads the files in one transaction unless one of their tables already holds rows.
SampleLoad loadSample(DbConnection& connection, const std::vector<SampleTable>& files) {
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

}  // namespace

QStringList sampleTables() {
    QStringList tables;
    for (const SampleTable& file : sampleFiles(samplePharmacyFiles())) tables << file.table;
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
    return loadSample(connection, sampleFiles(samplePharmacyFiles()));
}

SampleLoad loadPriceSourceSample(DbConnection& connection) {
    return loadSample(connection, sampleFiles(priceSourceSampleFiles()));
}

}  // namespace tvrx
