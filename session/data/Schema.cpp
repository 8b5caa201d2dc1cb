#include "session/data/Schema.h"

#include "session/data/DbConnection.h"
#include "session/data/EmbeddedFiles.h"
#include "session/data/TableRegistry.h"
#include "session/data/Transaction.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QRegularExpression>
#include <QSqlDatabase>

#include <algorithm>

namespace tvrx {

namespace {

const QString kVersionTable = QStringLiteral("SchemaVersion");

QString backendSuffix(Backend backend) {
    return Dialect(backend).name().toLower();
}

// "002_bit_like_flags.sqlite" -> version 2, for SQLite only.
struct FileName {
    int version = 0;
    QString name;
    QString backend;  // empty: both back ends
};

FileName parseFileName(std::string_view file) {
    QString base = QString::fromUtf8(file.data(), qsizetype(file.size()));
    base.chop(4);  // ".sql"
    FileName parsed;
    const qsizetype dot = base.indexOf(QLatin1Char('.'));
    parsed.name = dot < 0 ? base : base.left(dot);
    parsed.backend = dot < 0 ? QString() : base.mid(dot + 1);
    static const QRegularExpression leadingDigits(QStringLiteral("^(\\d+)_"));
    const auto match = leadingDigits.match(parsed.name);
    if (!match.hasMatch())
        fail(err::StatementError, QStringLiteral("schema file without a version: ") + base);
    parsed.version = match.captured(1).toInt();
    return parsed;
}

bool startsTrigger(const QString& statement) {
    static const QRegularExpression trigger(
        QStringLiteral("^\\s*CREATE\\s+(TEMP\\s+|TEMPORARY\\s+)?TRIGGER\\b"),
        QRegularExpression::CaseInsensitiveOption);
    return trigger.match(statement).hasMatch();
}

// Copies a quoted run ('...', "..." or $tag$...$tag$) starting at i; returns the index after it.
qsizetype copyQuoted(const QString& text, qsizetype i, const QString& closing, QString& out) {
    qsizetype end = text.indexOf(closing, i + closing.size());
    end = end < 0 ? text.size() : end + closing.size();
    out += QStringView(text).mid(i, end - i);
    return end;
}

QString dollarTagAt(const QString& text, qsizetype i) {
    static const QRegularExpression tag(QStringLiteral("\\$([A-Za-z_][A-Za-z_0-9]*)?\\$"));
    const auto match = tag.match(text, i, QRegularExpression::NormalMatch,
                                 QRegularExpression::AnchorAtOffsetMatchOption);
    return match.hasMatch() ? match.captured(0) : QString();
}

bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

void recordVersion(DbConnection& connection, const Migration& migration) {
    connection.Execute(QStringLiteral("INSERT INTO %1 (Version, Name, AppliedAt) VALUES (?, ?, %2)")
                           .arg(kVersionTable, connection.dialect().serverTime()),
                       {migration.version, migration.name});
}

void applyMigration(DbConnection& connection, const Migration& migration) {
    const QStringList statements = splitStatements(connection.dialect().ddl(migration.text));
    Transaction transaction(connection);
    for (const QString& statement : statements) connection.Execute(statement);
    recordVersion(connection, migration);
    transaction.commit();
}

struct CreatedTable {
    QString name;
    QString key;
};

// The tables the migrations create, each with its key column.
std::vector<CreatedTable> createdTables() {
    static const QRegularExpression createTable(
        QStringLiteral("^CREATE\\s+TABLE\\s+(IF\\s+NOT\\s+EXISTS\\s+)?(\\w+)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression keyColumn(
        QStringLiteral("(\\w+)\\s+(@KEY@|@INT@\\s+NOT\\s+NULL\\s+PRIMARY\\s+KEY)"));
    std::vector<CreatedTable> tables;
    for (const Migration& migration : schemaMigrations(Backend::SQLite)) {
        for (const QString& statement : splitStatements(migration.text)) {
            const auto created = createTable.match(statement);
            if (!created.hasMatch()) continue;
            const auto key = keyColumn.match(statement);
            tables.push_back({created.captured(2), key.hasMatch() ? key.captured(1) : QString()});
        }
    }
    return tables;
}

bool hasVersionTable(DbConnection& connection) {
    const QStringList tables = QSqlDatabase::database(connection.name(), false).tables();
    return std::any_of(tables.begin(), tables.end(), [](const QString& table) {
        return table.compare(kVersionTable, Qt::CaseInsensitive) == 0;
    });
}

}  // namespace

QStringList splitStatements(const QString& text) {
    QStringList statements;
    QString current;
    int depth = 0;  // open BEGIN or CASE blocks of a trigger body
    const auto finish = [&] {
        const QString statement = current.trimmed();
        if (!statement.isEmpty()) statements << statement;
        current.clear();
    };
    qsizetype i = 0;
    while (i < text.size()) {
        const QChar c = text[i];
        if (c == QLatin1Char('-') && text.mid(i, 2) == QLatin1String("--")) {
            const qsizetype end = text.indexOf(QLatin1Char('\n'), i);
            i = end < 0 ? text.size() : end;
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            i = copyQuoted(text, i, QString(c), current);
        } else if (c == QLatin1Char('$') && !dollarTagAt(text, i).isEmpty()) {
            i = copyQuoted(text, i, dollarTagAt(text, i), current);
        } else if (isWordChar(c)) {
            qsizetype end = i;
            while (end < text.size() && isWordChar(text[end])) ++end;
            const QString word = text.mid(i, end - i).toUpper();
            if (startsTrigger(current) &&
                (word == QLatin1String("BEGIN") || word == QLatin1String("CASE")))
                ++depth;
            if (depth > 0 && word == QLatin1String("END")) --depth;
            current += QStringView(text).mid(i, end - i);
            i = end;
        } else if (c == QLatin1Char(';') && depth == 0) {
            finish();
            ++i;
        } else {
            current += c;
            ++i;
        }
    }
    finish();
    return statements;
}

std::vector<Migration> schemaMigrations(Backend backend) {
    std::vector<Migration> migrations;
    const QString suffix = backendSuffix(backend);
    for (const EmbeddedFile& file : schemaMigrationFiles()) {
        const FileName parsed = parseFileName(file.name);
        if (!parsed.backend.isEmpty() && parsed.backend != suffix) continue;
        migrations.push_back({parsed.version, parsed.name,
                              QString::fromUtf8(file.text.data(), qsizetype(file.text.size()))});
    }
    std::sort(migrations.begin(), migrations.end(),
              [](const Migration& a, const Migration& b) { return a.version < b.version; });
    const auto twin =
        std::adjacent_find(migrations.begin(), migrations.end(),
                           [](const auto& a, const auto& b) { return a.version == b.version; });
    if (twin != migrations.end()) {
        fail(err::StatementError,
             QStringLiteral("two schema files claim version %1").arg(twin->version));
    }
    return migrations;
}

int schemaVersion(DbConnection& connection) {
    if (!hasVersionTable(connection)) return 0;
    return connection.Scalar(QStringLiteral("SELECT MAX(Version) FROM %1").arg(kVersionTable))
        .toInt();
}

SchemaReport applySchema(DbConnection& connection) {
    if (!hasVersionTable(connection)) {
        connection.Execute(connection.dialect().ddl(
            QStringLiteral("CREATE TABLE %1 (Version @INT@ NOT NULL PRIMARY KEY, Name @TEXT@, "
                           "AppliedAt @DATETIME@)")
                .arg(kVersionTable)));
    }
    SchemaReport report;
    report.versionBefore = schemaVersion(connection);
    for (const Migration& migration : schemaMigrations(connection.backend())) {
        if (migration.version <= report.versionBefore) continue;
        applyMigration(connection, migration);
        report.applied << migration.name;
    }
    report.versionAfter = schemaVersion(connection);
    registerSchemaTables();
    return report;
}

QStringList schemaTables() {
    QStringList names;
    for (const CreatedTable& table : createdTables()) names << table.name;
    return names;
}

void registerSchemaTables() {
    for (const CreatedTable& table : createdTables()) {
        TableRegistry::registerTable(
            {table.name, table.key, TableRegistry::bitColumns(table.name)});
    }
}

}  // namespace tvrx
