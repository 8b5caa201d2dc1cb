#pragma once

#include <QString>
#include <QStringList>

namespace tvrx {

// What the data layer must know about a table to change its rows: the key column that
// Update and Delete of an updatable record set find a row by, and the bit-like flag
// columns (any non-zero value assigned through a record set is stored as 1).
//
// The tables of the pharmacy's schema are registered here; the schema code registers
// further ones. A table that is not registered falls back to its primary key as the
// database reports it.
class TableRegistry {
public:
    struct Table {
        QString name;
        QString keyColumn;
        QStringList bitColumns;
    };

    static void registerTable(const Table& table);
    // Case-insensitive; an empty key when the table is unknown.
    static QString keyColumn(const QString& table);
    static QStringList bitColumns(const QString& table);
};

}  // namespace tvrx
