#include "reports/DocumentTable.h"

#include "session/text/Conversions.h"

namespace tvrx {

namespace {

using Align = DocumentTable::Align;

DocumentTable::Column columnOf(QString columnFormat) {
    columnFormat = conv::Trim(columnFormat);
    while (columnFormat.startsWith(u'+')) columnFormat.remove(0, 1);
    DocumentTable::Column column;
    static const QList<std::pair<QChar, Align>> marks{
        {u'<', Align::Left}, {u'^', Align::Centre}, {u'>', Align::Right}};
    for (const auto& [mark, align] : marks) {
        if (!columnFormat.startsWith(mark)) continue;
        column.align = align;
        columnFormat.remove(0, 1);
        break;
    }
    // The width's leading digits; a width beyond a billion twips is no width.
    qsizetype digits = 0;
    while (digits < columnFormat.size() && columnFormat[digits].isDigit()) ++digits;
    column.width = digits <= 9 ? columnFormat.left(digits).toInt() : 0;
    return column;
}

// The rows of a text, each cut or filled to the column count. An empty text after the
// last ";" is no row.
QList<QStringList> rowsOf(const QString& text, qsizetype columnCount) {
    QStringList rows = text.split(u';');
    if (!rows.isEmpty() && rows.last().isEmpty()) rows.removeLast();
    QList<QStringList> result;
    for (const QString& row : rows) {
        QStringList cells = row.split(u'|');
        cells.resize(columnCount);
        result.append(cells);
    }
    return result;
}

}  // namespace

DocumentTable DocumentTable::parse(const QString& format, const QString& header,
                                   const QString& body, qint32 headerShade, qint32 bodyShade) {
    DocumentTable table;
    const QString columnFormats = format.section(u';', 0, 0);
    if (!columnFormats.isEmpty()) {
        for (const QString& columnFormat : columnFormats.split(u'|'))
            table.columns.append(columnOf(columnFormat));
    }
    table.header = rowsOf(header, table.columns.size());
    table.body = rowsOf(body, table.columns.size());
    table.headerShade = headerShade & 0xFFFFFF;
    table.bodyShade = bodyShade & 0xFFFFFF;
    return table;
}

int DocumentTable::width() const {
    int total = 0;
    for (const Column& column : columns) total += column.width;
    return total;
}

}  // namespace tvrx
