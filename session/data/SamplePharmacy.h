#pragma once

#include <QString>
#include <QStringList>

namespace tvrx {

class DbConnection;

// What loadSamplePharmacy did.
struct SampleLoad {
    bool loaded = false;
    int rows = 0;
    // When nothing was loaded: the first of the sample's tables that already held rows.
    QString occupiedTable;
};

// Loads the sample pharmacy (db/sample) into a database whose schema is in place: a store,
// its options and pharmacists, a dozen patients with their coverage, prescribers, drugs
// with dosing times, facilities, a plan of each claim layout, price tables, and a few
// prescriptions. The rows carry their own keys, so a database that already holds rows in
// any of these tables is left alone. Everything is loaded in one transaction.
SampleLoad loadSamplePharmacy(DbConnection& connection);

// Loads the sample price tables of the alternate price source (db/pricesource/sample) into
// a database that has that source's schema, with the same rules: nothing into tables that
// already hold rows, everything in one transaction.
SampleLoad loadPriceSourceSample(DbConnection& connection);

// The tables the sample pharmacy fills, in load order.
QStringList sampleTables();

// Loads tab-separated text into a table: the header row names the columns, an empty field
// is a null, every value is bound. Returns the number of rows.
int loadTabSeparated(DbConnection& connection, const QString& table, const QString& text);

}  // namespace tvrx
