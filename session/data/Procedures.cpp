#include "session/data/Procedures.h"

#include "session/data/DbConnection.h"
#include "session/data/FillProcedures.h"
#include "session/data/HostProcedures.h"
#include "session/data/LifecycleProcedures.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <map>
#include <mutex>

namespace tvrx {

namespace {

// How often a new key is asked for when the one handed out was taken.
constexpr int kNewKeyAttempts = 5;

// The database hands out the key, so two workstations asking at once never get the same
// one. Only a row this insert made gives its key back, so no key handed out is ever a
// taken one.
qint32 insertEmptyRow(DbConnection& connection, const QString& table, const QString& key) {
    return Procedures::insertWithNewKey(
               connection, table, key,
               [&] { return connection.Scalar(connection.dialect().insertEmptyRow(table, key)); })
        .toInt();
}

Procedures::Procedure newKeyProcedure(const Procedures::NewKey& entry) {
    const QString table = QString::fromLatin1(entry.table);
    const QString key = QString::fromLatin1(entry.keyColumn);
    return [table, key](DbConnection& connection, const QVariantList&) {
        return Procedures::Result{insertEmptyRow(connection, table, key), RecordSet()};
    };
}

// dbo.PatientIns: the plan (InsID) of a patient's coverage row, below 1 when none.
Procedures::Result patientIns(DbConnection& connection, const QVariantList& args) {
    const QVariant insId = connection.Scalar(
        QStringLiteral("SELECT InsID FROM PATINS WHERE PatInsID = ?"), {args.value(0)});
    return {insId.isValid() ? insId : QVariant(0), RecordSet()};
}

QString canonical(const QString& name) {
    QString bare = name.trimmed();
    if (bare.startsWith(QLatin1String("dbo."), Qt::CaseInsensitive)) bare = bare.mid(4);
    return bare.toLower();
}

struct Registry {
    std::mutex mutex;
    std::map<QString, Procedures::Procedure> procedures;

    Registry() {
        for (const auto& entry : Procedures::newKeyProcedures()) {
            procedures[canonical(QString::fromLatin1(entry.name))] = newKeyProcedure(entry);
        }
        procedures[canonical(QStringLiteral("PatientIns"))] = patientIns;
        for (auto& [name, procedure] : fillProcedures())
            procedures[canonical(QString::fromLatin1(name))] = std::move(procedure);
        for (auto& [name, procedure] : lifecycleProcedures())
            procedures[canonical(QString::fromLatin1(name))] = std::move(procedure);
        for (auto& [name, procedure] : hostProcedures())
            procedures[canonical(QString::fromLatin1(name))] = std::move(procedure);
    }
};

Registry& registry() {
    static Registry instance;
    return instance;
}

}  // namespace

const std::vector<Procedures::NewKey>& Procedures::newKeyProcedures() {
    static const std::vector<NewKey> table{
        {"NewPatIns", "PATINS", "PatInsID"},
        {"NewPatient", "PATIENT", "PatientID"},
        {"NewDoc", "PHYSIC", "MDID"},
        {"NewDrug", "DRUG", "DrugID"},
        {"NewFacility", "Facility", "FacilityID"},
        {"NewInsurance", "INSURANCE", "InsID"},
    };
    return table;
}

void Procedures::registerProcedure(const QString& name, Procedure procedure) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    r.procedures[canonical(name)] = std::move(procedure);
}

bool Procedures::isRegistered(const QString& name) {
    Registry& r = registry();
    std::lock_guard lock(r.mutex);
    return r.procedures.count(canonical(name)) > 0;
}

Procedures::Result Procedures::call(DbConnection& connection, const QString& name,
                                    const QVariantList& args) {
    Procedure procedure;
    {
        Registry& r = registry();
        std::lock_guard lock(r.mutex);
        const auto found = r.procedures.find(canonical(name));
        if (found != r.procedures.end()) procedure = found->second;
    }
    if (!procedure) {
        fail(err::StatementError,
             QStringLiteral("Could not find stored procedure '%1'.").arg(name.trimmed()));
    }
    return procedure(connection, args);
}

qint32 Procedures::newKey(DbConnection& connection, const QString& name) {
    return call(connection, name).ReturnValue.toInt();
}

// A row written with a key of its own (a pharmacy bringing its data, any host's loader) may
// hold the key the counter hands out next; any other rule the insert breaks fails the same
// way on every attempt and is passed on after the last.
QVariant Procedures::insertWithNewKey(DbConnection& connection, const QString& table,
                                      const QString& keyColumn,
                                      const std::function<QVariant()>& insert) {
    for (int attempt = 1;; ++attempt) {
        try {
            return insert();
        } catch (const Failure& failure) {
            const bool keyTaken = failure.number() == err::ConstraintViolated;
            if (!keyTaken || attempt == kNewKeyAttempts) throw;
        }
        catchUpKeyCounter(connection, table, keyColumn);
    }
}

void Procedures::catchUpKeyCounter(DbConnection& connection, const QString& table,
                                   const QString& keyColumn) {
    const Dialect& dialect = connection.dialect();
    const QString catchUp = dialect.keyCounterCatchUp(table, keyColumn);
    if (catchUp.isEmpty()) return;
    connection.Scalar(catchUp, {dialect.catalogName(table), dialect.catalogName(keyColumn)});
}

}  // namespace tvrx
