#include "support/OutlineReplay.h"
#include "ui/QtResultTree.h"
#include "ui/frmClaim.h"

#include <QDir>
#include <QTabWidget>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace tvrx {
namespace {

const QStringList kImages{"Information", "Check", "Exclamation", "Paid", "Rejected"};

// What the widget shows of an item, in the outline's words, keys left out (the widget does
// not hold them).
QString shown(const QtResultTree& tree, const QTreeWidget& widget, QTreeWidgetItem* item,
              int depth) {
    QString line = QString(qsizetype(depth) * 2, u' ') + u'"' + toNotation(item->text(0)) + u'"';
    QString image = QStringLiteral("?");
    for (const QString& name : kImages) {
        if (tree.icon(name).cacheKey() == item->icon(0).cacheKey()) image = name;
    }
    line += QStringLiteral(" image=") + image;
    if (item->isExpanded()) line += QStringLiteral(" expanded");
    const QFont font = item->font(0);
    if (font.bold()) line += QStringLiteral(" bold");
    if (font.pointSize() != widget.font().pointSize()) {
        line += QStringLiteral(" size=%1").arg(font.pointSize());
    }
    if (item->data(0, Qt::ForegroundRole).isValid()) {
        const QColor c = item->foreground(0).color();
        const int colour = c.red() | c.green() << 8 | c.blue() << 16;
        line += QStringLiteral(" colour=") +
                QStringLiteral("%1").arg(colour, 6, 16, QChar(u'0')).toUpper();
    }
    return line;
}

void shownLines(const QtResultTree& tree, const QTreeWidget& widget, QTreeWidgetItem* parent,
                int depth, QStringList& lines) {
    const int count = parent ? parent->childCount() : widget.topLevelItemCount();
    for (int n = 0; n < count; ++n) {
        QTreeWidgetItem* item = parent ? parent->child(n) : widget.topLevelItem(n);
        lines.append(shown(tree, widget, item, depth));
        shownLines(tree, widget, item, depth + 1, lines);
    }
}

// Every result tree the core's tests expect, built again on the claim form's widget: the
// widget shows each node's text, image, expansion, weight, size and colour as the outline
// has them (a colour's blue in the high byte turned into the screen's blue).
TEST(ResultTreeWidgetTest, ShowsEveryOutlineOfTheCoreTests) {
    const QFileInfoList outlines = QDir(QStringLiteral(TVRX_SOURCE_DIR "/tests/responses/tree"))
                                       .entryInfoList({QStringLiteral("*.txt")}, QDir::Files);
    ASSERT_FALSE(outlines.isEmpty());
    frmClaim form;
    ASSERT_EQ(form.sstClaim()->count(), 1);
    ASSERT_EQ(form.sstClaim()->widget(0), form.SSActiveTabPanel1());
    QtResultTree tree(*form.tree());
    for (const QFileInfo& outline : outlines) {
        SCOPED_TRACE(outline.fileName().toStdString());
        tree.Clear();
        const QStringList expected = test::outlineTreeLines(outline.filePath());
        ASSERT_TRUE(test::replayOutline(expected, tree));
        QStringList lines;
        shownLines(tree, *form.tree(), nullptr, 0, lines);
        QStringList withoutKeys = expected;
        withoutKeys.replaceInStrings(QRegularExpression(QStringLiteral(R"re( key="[^"]*")re")), {});
        EXPECT_EQ(lines.join(u'\n').toStdString(), withoutKeys.join(u'\n').toStdString());
    }
}

}  // namespace
}  // namespace tvrx
