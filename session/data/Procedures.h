#pragma once

#include "session/data/RecordSet.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace tvrx {

class DbConnection;

// The server procedures of the pharmacy's database, written once in C++ over SQL that both
// back ends run. Each is registered by name; a later part of the library registers the
// procedures it defines. Names are matched ignoring letter case and a "dbo." prefix.
class Procedures {
public:
    struct Result {
        // "@RETURN_VALUE"; null when the procedure returns none.
        QVariant ReturnValue;
        // The rows the procedure selects, if any (a closed record set when none).
        RecordSet rows = {};
        // The output parameters by name ("@RxNumber"); empty when the procedure has none.
        QVariantMap Output = {};
    };
    using Procedure = std::function<Result(DbConnection& connection, const QVariantList& args)>;

    // A procedure that inserts an otherwise empty row into its table and returns its key.
    struct NewKey {
        const char* name;
        const char* table;
        const char* keyColumn;
    };
    static const std::vector<NewKey>& newKeyProcedures();

    static void registerProcedure(const QString& name, Procedure procedure);
    static bool isRegistered(const QString& name);

    // "Call a procedure with arguments". An unregistered name fails with 0x80040E14.
    static Result call(DbConnection& connection, const QString& name,
                       const QVariantList& args = {});
    // "Call a procedure for a new key": NewPatIns, NewPatient, NewDoc, NewDrug,
    // NewFacility, NewInsurance insert an otherwise empty row and return its key.
    // A key they hand out is never one that is taken, whoever wrote the rows.
    static qint32 newKey(DbConnection& connection, const QString& name);

    // Moves the counter that numbers a table's new rows past the highest key the table
    // holds, where rows written with keys of their own left it behind (PostgreSQL; SQLite's
    // counter follows every key written). A table whose key is not numbered is left alone.
    static void catchUpKeyCounter(DbConnection& connection, const QString& table,
                                  const QString& keyColumn);

    // Runs an insert whose key the database hands out and gives back what it returns. The
    // key handed out may be one a row written with its own key already holds (a pharmacy
    // bringing its data): the insert then fails on the key, the counter is moved past the
    // highest key, and the insert runs again, a few times at most.
    static QVariant insertWithNewKey(DbConnection& connection, const QString& table,
                                     const QString& keyColumn,
                                     const std::function<QVariant()>& insert);
};

}  // namespace tvrx
