// Builds the lookup database (the reject and conflict codes the response screens look up)
// from tab-separated files: tvrx_build_lookup OUTPUT TABLE=FILE [TABLE=FILE ...].
// Each file's header row names the table's columns; every column is text. Rows keep the
// file's order, because the readers take the first row that matches.

#include "session/data/TabSeparated.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include <cstdio>
#include <stdexcept>
#include <vector>

namespace {

struct TableSource {
    QString table;
    QString file;
};

using tvrx::TabSeparated;

[[noreturn]] void failWith(const QString& message) {
    throw std::runtime_error(message.toStdString());
}

TabSeparated readTsv(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) failWith(path + QStringLiteral(": ") + file.errorString());
    TabSeparated tsv = tvrx::parseTabSeparated(QString::fromUtf8(file.readAll()));
    if (!tsv.error.isEmpty()) failWith(path + QStringLiteral(": ") + tsv.error);
    return tsv;
}

void exec(QSqlQuery& query, const QString& what) {
    if (!query.exec()) failWith(what + QStringLiteral(": ") + query.lastError().text());
}

void writeTable(QSqlDatabase& db, const TableSource& source) {
    const TabSeparated tsv = readTsv(source.file);
    QSqlQuery query(db);
    QStringList definitions;
    for (const QString& column : tsv.columns) definitions << column + QStringLiteral(" text");
    query.prepare(QStringLiteral("CREATE TABLE %1 (%2)")
                      .arg(source.table, definitions.join(QStringLiteral(", "))));
    exec(query, source.table);

    const QStringList marks(tsv.columns.size(), QStringLiteral("?"));
    query.prepare(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(source.table, tsv.columns.join(QStringLiteral(", ")),
                           marks.join(QStringLiteral(", "))));
    for (const QStringList& row : tsv.rows) {
        for (qsizetype i = 0; i < row.size(); ++i) query.bindValue(int(i), row[i]);
        exec(query, source.table);
    }
    std::printf("%s: %zu rows from %s\n", qPrintable(source.table), tsv.rows.size(),
                qPrintable(source.file));
}

void build(const QString& output, const std::vector<TableSource>& sources) {
    const QString partial = output + QStringLiteral(".partial");
    QFile::remove(partial);
    {
        QSqlDatabase db =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("lookup"));
        db.setDatabaseName(partial);
        if (!db.open()) failWith(partial + QStringLiteral(": ") + db.lastError().text());
        db.transaction();
        for (const TableSource& source : sources) writeTable(db, source);
        if (!db.commit()) failWith(partial + QStringLiteral(": ") + db.lastError().text());
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("lookup"));
    QFile::remove(output);
    if (!QFile::rename(partial, output))
        failWith(QStringLiteral("cannot move %1 to %2").arg(partial, output));
}

std::vector<TableSource> parseSources(const QStringList& arguments) {
    std::vector<TableSource> sources;
    for (const QString& argument : arguments) {
        const qsizetype equals = argument.indexOf(QLatin1Char('='));
        if (equals <= 0) failWith(QStringLiteral("expected TABLE=FILE, got '%1'").arg(argument));
        sources.push_back({argument.left(equals), argument.mid(equals + 1)});
    }
    return sources;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 2) {
        std::fputs("usage: tvrx_build_lookup OUTPUT TABLE=FILE [TABLE=FILE ...]\n", stderr);
        return 2;
    }
    try {
        build(arguments.first(), parseSources(arguments.mid(1)));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tvrx_build_lookup: %s\n", failure.what());
        return 1;
    }
    return 0;
}
