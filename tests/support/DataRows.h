#pragma once

#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <string>

namespace tvrx::test {

// A row of a tab-separated file under tests/data, with "file:line: text" for messages.
struct DataRow {
    QStringList cells;
    std::string where;
};

// The rows of tests/data/<name> without blank lines and "#" comment lines. A missing or
// empty file fails the test: a test must not pass by reading nothing.
inline QList<DataRow> dataRows(const QString& name) {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/data/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << name.toStdString();
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    QList<DataRow> rows;
    for (qsizetype line = 0; line < lines.size(); ++line) {
        if (lines[line].isEmpty() || lines[line].startsWith(u'#')) continue;
        const QString where = QStringLiteral("%1:%2: %3").arg(name).arg(line + 1).arg(lines[line]);
        rows.append({lines[line].split(u'\t'), where.toStdString()});
    }
    EXPECT_FALSE(rows.isEmpty()) << name.toStdString() << " has no rows";
    return rows;
}

// A case of a keyword file: the rows from one "case" line to the next, each row's first
// cell its keyword.
struct KeywordCase {
    std::string where;
    QList<QStringList> lines;
    // The rows of a keyword without it, in order.
    QList<QStringList> all(const QString& keyword) const {
        QList<QStringList> found;
        for (const QStringList& line : lines)
            if (line.value(0) == keyword) found << line.mid(1);
        return found;
    }
    QStringList first(const QString& keyword) const { return all(keyword).value(0); }
};

}  // namespace tvrx::test
