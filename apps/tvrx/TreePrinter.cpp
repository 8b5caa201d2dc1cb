#include "tvrx/TreePrinter.h"

#include "responses/PlainTree.h"
#include "session/text/ClaimNotation.h"

#include <unistd.h>

namespace tvrx::cli {
namespace {

const QString kReset = QStringLiteral("\x1b[0m");

// The escape for a node's style; empty for a plain node.
QString styleEscape(const PlainTree::Item& item) {
    QString escape;
    if (item.bold) escape += QStringLiteral("\x1b[1m");
    if (item.colour) {
        // The tree's colours hold blue in the high byte.
        const qint32 c = *item.colour;
        escape += QStringLiteral("\x1b[38;2;%1;%2;%3m")
                      .arg(c & 0xFF)
                      .arg((c >> 8) & 0xFF)
                      .arg((c >> 16) & 0xFF);
    }
    return escape;
}

void linesFrom(const PlainTree& tree, TreeControl::Node parent, int depth, bool colour,
               QStringList& lines) {
    for (const TreeControl::Node node : tree.children(parent)) {
        const PlainTree::Item& item = tree.item(node);
        const bool hasChildren = !tree.children(node).isEmpty();
        const QString mark = !hasChildren    ? QStringLiteral("  ")
                             : item.expanded ? QStringLiteral("- ")
                                             : QStringLiteral("+ ");
        const QString text = toNotation(item.text);
        const QString escape = colour ? styleEscape(item) : QString();
        QString line = QString(qsizetype(depth) * 2, u' ') + mark +
                       (escape.isEmpty() ? text : escape + text + kReset);
        // An empty text leaves only blanks, which a terminal does not show either.
        while (line.endsWith(u' ')) line.chop(1);
        lines.append(line);
        linesFrom(tree, node, depth + 1, colour, lines);
    }
}

}  // namespace

QStringList treeLines(const PlainTree& tree, bool colour) {
    QStringList lines;
    linesFrom(tree, -1, 0, colour, lines);
    return lines;
}

void printTree(const PlainTree& tree, std::FILE* out) {
    const bool colour = isatty(fileno(out)) != 0;
    for (const QString& line : treeLines(tree, colour)) {
        std::fprintf(out, "%s\n", line.toUtf8().constData());
    }
}

}  // namespace tvrx::cli
