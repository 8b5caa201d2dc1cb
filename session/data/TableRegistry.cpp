#include "session/data/TableRegistry.h"

#include <QList>

#include <mutex>

namespace tvrx {

namespace {

// The pharmacy's tables whose keys the record classes name. Deleted and the plan's
// OnLine and Internet flags hold 1 for true, however a record set assigns them.
QList<TableRegistry::Table> builtInTables() {
    return {
        {QStringLiteral("RXINFO"), QStringLiteral("RxInfoID"), {QStringLiteral("Deleted")}},
        {QStringLiteral("PATIENT"), QStringLiteral("PatientID"), {QStringLiteral("Deleted")}},
        {QStringLiteral("PATINS"), QStringLiteral("PatInsID"), {}},
        {QStringLiteral("INSURANCE"),
         QStringLiteral("InsID"),
         {QStringLiteral("Deleted"), QStringLiteral("OnLine"), QStringLiteral("Internet")}},
        {QStringLiteral("PHYSIC"), QStringLiteral("MDID"), {}},
        {QStringLiteral("DRUG"), QStringLiteral("DrugID"), {}},
        {QStringLiteral("DrugTimes"), QStringLiteral("DrugTimesID"), {}},
        {QStringLiteral("Facility"), QStringLiteral("FacilityID"), {}},
        {QStringLiteral("Options"), QStringLiteral("OptionsID"), {}},
        {QStringLiteral("RPH"), QStringLiteral("RPhID"), {}},
    };
}

struct Registry {
    std::mutex mutex;
    QList<TableRegistry::Table> tables = builtInTables();
};

Registry& registry() {
    static Registry instance;
    return instance;
}

const TableRegistry::Table* find(const QList<TableRegistry::Table>& tables, const QString& name) {
    for (const auto& table : tables) {
        if (table.name.compare(name, Qt::CaseInsensitive) == 0) return &table;
    }
    return nullptr;
}

}  // namespace

void TableRegistry::registerTable(const Table& table) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    for (auto& known : r.tables) {
        if (known.name.compare(table.name, Qt::CaseInsensitive) == 0) {
            known = table;
            return;
        }
    }
    r.tables.append(table);
}

QString TableRegistry::keyColumn(const QString& table) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    const Table* known = find(r.tables, table.trimmed());
    return known ? known->keyColumn : QString();
}

QStringList TableRegistry::bitColumns(const QString& table) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    const Table* known = find(r.tables, table.trimmed());
    return known ? known->bitColumns : QStringList();
}

}  // namespace tvrx
