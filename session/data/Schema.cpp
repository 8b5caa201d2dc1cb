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
#include <optional>

namespace tvrx {

namespace {

const QString kRefusal = QStringLiteral("refuse if any row:");

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

QString versionTable(const MigrationSet& set) {
    return QString::fromLatin1(set.versionTable);
}

void recordVersion(DbConnection& connection, const MigrationSet& set, const Migration& migration) {
    connection.Execute(QStringLiteral("INSERT INTO %1 (Version, Name, AppliedAt) VALUES (?, ?, %2)")
                           .arg(versionTable(set), connection.dialect().serverTime()),
                       {migration.version, migration.name});
}

// One statement of a migration; a check carries the text it refuses with.
struct Step {
    QString sql;
    QString refusal;
};

// The text after "-- refuse if any row:" on a line of its own, or none.
std::optional<QString> refusalOf(const QString& line) {
    const QString trimmed = line.trimmed();
    if (!trimmed.startsWith(QLatin1String("--"))) return std::nullopt;
    const QString comment = trimmed.mid(2).trimmed();
    if (!comment.startsWith(kRefusal, Qt::CaseInsensitive)) return std::nullopt;
    return comment.mid(kRefusal.size()).trimmed();
}

// The statements of a migration; the first statement after a refusal line is its check.
std::vector<Step> migrationSteps(const QString& text) {
    std::vector<Step> steps;
    QString chunk;
    QString refusal;
    const auto finish = [&] {
        const QStringList statements = splitStatements(chunk);
        for (qsizetype i = 0; i < statements.size(); ++i)
            steps.push_back({statements[i], i == 0 ? refusal : QString()});
        chunk.clear();
        refusal.clear();
    };
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        if (const auto found = refusalOf(line)) {
            finish();
            refusal = *found;
            continue;
        }
        chunk += line + QLatin1Char('\n');
    }
    finish();
    return steps;
}

// Fails with the refusal and the rows the check found, each as its values.
void runCheck(DbConnection& connection, const Step& check) {
    RecordSet rows = connection.OpenRecordSet(check.sql);
    if (rows.Eof()) return;
    QStringList found;
    for (; !rows.Eof(); rows.MoveNext()) {
        QStringList values;
        for (int i = 0; i < rows.FieldCount(); ++i) values << rows.Fields(i).toString();
        found << values.join(QStringLiteral(", "));
    }
    fail(err::ConstraintViolated,
         check.refusal + QStringLiteral(": ") + found.join(QStringLiteral("; ")));
}

void applyMigration(DbConnection& connection, const MigrationSet& set, const Migration& migration) {
    const std::vector<Step> steps = migrationSteps(connection.dialect().ddl(migration.text));
    Transaction transaction(connection);
    for (const Step& step : steps) {
        if (step.refusal.isEmpty())
            connection.Execute(step.sql);
        else
            runCheck(connection, step);
    }
    recordVersion(connection, set, migration);
    transaction.commit();
}

struct CreatedTable {
    QString name;
    QString key;
};

// The tables the migrations create and no later one drops, each with its key column.
std::vector<CreatedTable> createdTables(const MigrationSet& set) {
    static const QRegularExpression createTable(
        QStringLiteral("^CREATE\\s+TABLE\\s+(IF\\s+NOT\\s+EXISTS\\s+)?(\\w+)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression dropTable(
        QStringLiteral("^DROP\\s+TABLE\\s+(IF\\s+EXISTS\\s+)?(\\w+)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression keyColumn(
        QStringLiteral("(\\w+)\\s+(@KEY@|@INT@\\s+NOT\\s+NULL\\s+PRIMARY\\s+KEY)"));
    std::vector<CreatedTable> tables;
    for (const Migration& migration : schemaMigrations(Backend::SQLite, set)) {
        for (const QString& statement : splitStatements(migration.text)) {
            if (const auto dropped = dropTable.match(statement); dropped.hasMatch()) {
                std::erase_if(tables, [&](const CreatedTable& table) {
                    return table.name.compare(dropped.captured(2), Qt::CaseInsensitive) == 0;
                });
            }
            const auto created = createTable.match(statement);
            if (!created.hasMatch()) continue;
            const auto key = keyColumn.match(statement);
            tables.push_back({created.captured(2), key.hasMatch() ? key.captured(1) : QString()});
        }
    }
    return tables;
}

bool hasVersionTable(DbConnection& connection, const MigrationSet& set) {
    const QStringList tables = QSqlDatabase::database(connection.name(), false).tables();
    return std::any_of(tables.begin(), tables.end(), [&](const QString& table) {
        return table.compare(versionTable(set), Qt::CaseInsensitive) == 0;
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

const MigrationSet& pharmacySchema() {
    static const MigrationSet set{"pharmacy", schemaMigrationFiles, "SchemaVersion"};
    return set;
}

const MigrationSet& priceSourceSchema() {
    static const MigrationSet set{"price source", priceSourceMigrationFiles, "PriceSourceVersion"};
    return set;
}

std::vector<Migration> schemaMigrations(Backend backend, const MigrationSet& set) {
    std::vector<Migration> migrations;
    const QString suffix = backendSuffix(backend);
    for (const EmbeddedFile& file : set.files()) {
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

int schemaVersion(DbConnection& connection, const MigrationSet& set) {
    if (!hasVersionTable(connection, set)) return 0;
    return connection.Scalar(QStringLiteral("SELECT MAX(Version) FROM %1").arg(versionTable(set)))
        .toInt();
}

SchemaReport applySchema(DbConnection& connection, const MigrationSet& set) {
    if (!hasVersionTable(connection, set)) {
        connection.Execute(connection.dialect().ddl(
            QStringLiteral("CREATE TABLE %1 (Version @INT@ NOT NULL PRIMARY KEY, Name @TEXT@, "
                           "AppliedAt @DATETIME@)")
                .arg(versionTable(set))));
    }
    SchemaReport report;
    report.versionBefore = schemaVersion(connection, set);
    for (const Migration& migration : schemaMigrations(connection.backend(), set)) {
        if (migration.version <= report.versionBefore) continue;
        applyMigration(connection, set, migration);
        report.applied << migration.name;
    }
    report.versionAfter = schemaVersion(connection, set);
    return report;
}

SchemaReport applySchema(DbConnection& connection) {
    SchemaReport report = applySchema(connection, pharmacySchema());
    registerSchemaTables();
    return report;
}

QStringList schemaTables(const MigrationSet& set) {
    QStringList names;
    for (const CreatedTable& table : createdTables(set)) names << table.name;
    return names;
}

void registerSchemaTables() {
    for (const CreatedTable& table : createdTables(pharmacySchema())) {
        TableRegistry::registerTable(
            {table.name, table.key, TableRegistry::bitColumns(table.name)});
    }
}

}  // namespace tvrx
