#include "reports/DocumentTable.h"

#include "support/DataRows.h"

#include <QHash>

#include <gtest/gtest.h>

namespace tvrx {
namespace {

QString columnsText(const DocumentTable& table) {
    static const QHash<DocumentTable::Align, QChar> marks{{DocumentTable::Align::Left, u'<'},
                                                          {DocumentTable::Align::Centre, u'^'},
                                                          {DocumentTable::Align::Right, u'>'}};
    QStringList columns;
    for (const auto& column : table.columns) {
        columns.append(marks.value(column.align) + QString::number(column.width));
    }
    return columns.join(u'|');
}

QString rowsText(const QList<QStringList>& rows) {
    QStringList texts;
    for (const QStringList& row : rows) texts.append(row.join(u'|'));
    return texts.join(QStringLiteral(" / "));
}

TEST(DocumentTableTest, TheThreeTextsMakeColumnsAndRows) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("document-tables.tsv"))) {
        const QStringList& cell = row.cells;
        const DocumentTable table =
            DocumentTable::parse(cell.value(0), cell.value(1), cell.value(2), 65535, 0xFFFFFF);
        EXPECT_EQ(columnsText(table), cell.value(3)) << row.where;
        EXPECT_EQ(rowsText(table.header), cell.value(4)) << row.where;
        EXPECT_EQ(rowsText(table.body), cell.value(5)) << row.where;
    }
}

}  // namespace
}  // namespace tvrx
