#pragma once

#include "session/data/ColumnTable.h"

#include <QJsonValue>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace tvrx {

class DbConnection;

namespace cli {

// A record as "tvrx show" prints it: property names and values, in the class's order.
using ShownRecord = QList<QPair<QString, QVariant>>;

// A part printed after the record, under its own name: either name/value pairs printed
// like the record, or text lines that have a JSON form of their own.
struct ShownSection {
    QString name;
    ShownRecord values;
    QStringList lines;
    QJsonValue json;
};

// What "tvrx show" prints: the record, then the sections of kinds that have any.
struct Shown {
    // Not explicit: a kind without sections gives its record alone.
    Shown(ShownRecord shownRecord) : record(std::move(shownRecord)) {}
    ShownRecord record;
    QList<ShownSection> sections;
};

// One kind of record "tvrx show" knows. Each record's file adds a function that gives its
// kind, and the table in ShowCommand.cpp lists them.
struct ShowKind {
    QString name;         // the word on the command line
    QString keyName;      // the key property, for messages
    QString description;  // one line for the usage
    // Hands the connection to the record class, reads the record with this key and gives
    // its properties; nothing when no row has that key.
    std::function<std::optional<Shown>(std::shared_ptr<DbConnection>, qint32 key)> load;
};

// Every described column's property, by column name, in the order of the description.
template <class Record>
void appendColumns(ShownRecord& shown, const ColumnTable<Record>& table, const Record& record) {
    for (const auto& column : table.columns())
        shown.append({column.name, column.property.get(record)});
}

// Whether the table has a row with this key. The records themselves leave an object as
// it was when the row is missing, so the command asks first.
bool rowExists(DbConnection& connection, const QString& table, const QString& keyColumn,
               const QVariant& key, const char* label);

// The columns GetData reads, by column name, in the order of the description. A column
// that is only written (the time of the latest change) has nothing read to show.
template <class Record>
void appendReadColumns(ShownRecord& shown, const ColumnTable<Record>& table, const Record& record) {
    for (const auto& column : table.columns()) {
        if (column.read.kind != ReadForm::Kind::NotRead)
            shown.append({column.name, column.property.get(record)});
    }
}

ShowKind showPlanKind();
ShowKind showCoverageKind();
ShowKind showPatientKind();
ShowKind showPrescriberKind();
ShowKind showDrugKind();
ShowKind showFacilityKind();
ShowKind showPrescriptionKind();

}  // namespace cli
}  // namespace tvrx
