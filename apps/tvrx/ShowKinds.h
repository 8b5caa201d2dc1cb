#pragma once

#include "session/ColumnTable.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace tvrx {

class DbConnection;

namespace cli {

// A record as "tvrx show" prints it: property names and values, in the class's order.
using ShownRecord = QList<QPair<QString, QVariant>>;

// One kind of record "tvrx show" knows. Each record's file adds a function that gives its
// kind, and the table in ShowCommand.cpp lists them.
struct ShowKind {
    QString name;         // the word on the command line
    QString keyName;      // the key property, for messages
    QString description;  // one line for the usage
    // Hands the connection to the record class, reads the record with this key and gives
    // its properties; nothing when no row has that key.
    std::function<std::optional<ShownRecord>(std::shared_ptr<DbConnection>, qint32 key)> load;
};

// Every described column's property, by column name, in the order of the description.
template <class Record>
void appendColumns(ShownRecord& shown, const ColumnTable<Record>& table, const Record& record) {
    for (const auto& column : table.columns())
        shown.append({column.name, column.property.get(record)});
}

ShowKind showPlanKind();
ShowKind showCoverageKind();
ShowKind showPatientKind();
ShowKind showPrescriberKind();
ShowKind showDrugKind();
ShowKind showFacilityKind();

}  // namespace cli
}  // namespace tvrx
