#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// Tests that check a page of docs/ row for row read the page's tables themselves, so the
// page and the tests cannot drift apart.
namespace tvrx::test {

struct MarkdownRow {
    QStringList cells;  // trimmed, as many as the header has
    QString where;      // "CONVERSIONS.md:57: | ... |", for failure messages
};

struct MarkdownTable {
    QStringList header;
    QList<MarkdownRow> rows;
};

// The first table under the heading line `heading` (written out in full, "## Rounding")
// and before the next heading. A missing file, heading or table, or a row whose cells do
// not match the header, throws: a test must not pass by reading nothing.
MarkdownTable markdownTable(const QString& path, const QString& heading);

// The texts of a cell written as one or more double-quoted texts separated by commas
// ("&HFF", "&hff"). Inside the quotes \t, \n, \r, \0, \" and \\ stand for a tab, a line
// feed, a carriage return, the character 0, a quote and a backslash. Nothing when the cell
// is written otherwise.
std::optional<QStringList> quotedTexts(const QString& cell);

}  // namespace tvrx::test
