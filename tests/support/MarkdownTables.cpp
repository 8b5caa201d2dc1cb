#include "support/MarkdownTables.h"

#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace tvrx::test {
namespace {

[[noreturn]] void fail(const QString& message) {
    throw std::runtime_error(message.toStdString());
}

bool isTableLine(const QString& line) {
    return line.startsWith(u'|');
}

// "| a | b |" gives {"a", "b"}. The doc's cells never hold a "|" of their own.
QStringList cellsOf(const QString& line) {
    QStringList cells = line.trimmed().split(u'|');
    if (cells.size() < 3 || !cells.last().isEmpty()) return {};
    cells.removeFirst();
    cells.removeLast();
    for (QString& cell : cells) cell = cell.trimmed();
    return cells;
}

// The escapes a quoted cell may hold and the characters they stand for, position by position.
const QString kEscapes = QStringLiteral("tnr0\"\\");
const QString kEscaped = QStringLiteral("\t\n\r") + QChar(0) + QStringLiteral("\"\\");

}  // namespace

MarkdownTable markdownTable(const QString& path, const QString& heading) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) fail(path + ": cannot be read");
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    const QString name = QFileInfo(path).fileName();

    qsizetype at = lines.indexOf(heading);
    if (at < 0) fail(name + ": no heading " + heading);
    while (++at < lines.size() && !isTableLine(lines[at])) {
        if (lines[at].startsWith(u'#')) fail(name + ": no table under " + heading);
    }
    if (at + 1 >= lines.size()) fail(name + ": no table under " + heading);

    MarkdownTable table;
    table.header = cellsOf(lines[at]);
    const QStringList rule = cellsOf(lines[at + 1]);
    if (table.header.isEmpty() || rule.size() != table.header.size() ||
        !rule.join(QString()).contains(QStringLiteral("---"))) {
        fail(
            QStringLiteral("%1:%2: a table starts with a header and a rule").arg(name).arg(at + 1));
    }
    for (at += 2; at < lines.size() && isTableLine(lines[at]); ++at) {
        const QString where = QStringLiteral("%1:%2: %3").arg(name).arg(at + 1).arg(lines[at]);
        MarkdownRow row{cellsOf(lines[at]), where};
        if (row.cells.size() != table.header.size()) fail(where + " (cells do not match header)");
        table.rows << row;
    }
    if (table.rows.isEmpty()) fail(name + ": the table under " + heading + " has no rows");
    return table;
}

std::optional<QStringList> quotedTexts(const QString& cell) {
    QStringList texts;
    qsizetype at = 0;
    while (true) {
        if (at >= cell.size() || cell[at] != u'"') return std::nullopt;
        QString text;
        for (++at; at < cell.size() && cell[at] != u'"'; ++at) {
            if (cell[at] != u'\\') {
                text += cell[at];
                continue;
            }
            if (++at == cell.size()) return std::nullopt;
            const qsizetype escape = kEscapes.indexOf(cell[at]);
            if (escape < 0) return std::nullopt;
            text += kEscaped[escape];
        }
        if (at++ >= cell.size()) return std::nullopt;  // no closing quote
        texts << text;
        if (at == cell.size()) return texts;
        if (!cell.mid(at).startsWith(QStringLiteral(", "))) return std::nullopt;
        at += 2;
    }
}

}  // namespace tvrx::test
