#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace tvrx {

// A table of a page document, read from the three texts a report hands over:
//
//     format  "+1500|+1100|+^2500|+>1600;"   a column format per column, "|" between, ";" at the
//     end header  "Plan|BIN|PCN|Group #;"          rows of cells, "|" between cells, ";" after a
//     row body    "PRMARY|610014|MEDDPRIME|A1;"
//
// A column format is an optional "+" (which changes nothing), then "<" left (the default),
// "^" centred or ">" right, then the width in twips. A row's cells beyond the columns are
// dropped and missing ones are empty. Columns keep their widths: a table wider than the
// text runs into the right margin and is never narrowed.
struct DocumentTable {
    enum class Align { Left, Centre, Right };
    struct Column {
        Align align = Align::Left;
        int width = 0;  // twips
    };

    QList<Column> columns;
    QList<QStringList> header;
    QList<QStringList> body;
    qint32 headerShade = 0xFFFFFF;
    qint32 bodyShade = 0xFFFFFF;

    static DocumentTable parse(const QString& format, const QString& header, const QString& body,
                               qint32 headerShade, qint32 bodyShade);
    // The width of all columns, in twips.
    int width() const;
};

}  // namespace tvrx
