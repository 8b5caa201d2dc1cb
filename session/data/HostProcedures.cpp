#include "session/data/HostProcedures.h"

#include "session/data/DbConnection.h"

namespace tvrx {

namespace {

// What a procedure hands back: the rows its query selects, the key its insert made (as
// the return value), or nothing.
enum class Gives { Rows, NewKey, Nothing };

struct HostQuery {
    const char* name;
    Gives gives;
    // How many values the statement binds, in the order the catalogue passes them; a
    // value the host left out is bound as null.
    int arguments;
    // @NOW@ stands for the server's time.
    const char* statement;
};

// A name matches from its start, ignoring letter case; a null or empty name matches all.
// A patient's fills are those not deleted, by number and refill.
const HostQuery kQueries[] = {
    {"FindPatients", Gives::Rows, 2,
     "SELECT * FROM PATIENT WHERE UPPER(COALESCE(LastName, '')) LIKE UPPER(COALESCE(?, '')) "
     "|| '%' AND UPPER(COALESCE(FirstName, '')) LIKE UPPER(COALESCE(?, '')) || '%' AND "
     "COALESCE(Deleted, 0) = 0 ORDER BY LastName, FirstName, PatientID"},
    {"FindDoctors", Gives::Rows, 2,
     "SELECT * FROM PHYSIC WHERE UPPER(COALESCE(LastName, '')) LIKE UPPER(COALESCE(?, '')) "
     "|| '%' AND UPPER(COALESCE(FirstName, '')) LIKE UPPER(COALESCE(?, '')) || '%' "
     "ORDER BY LastName, FirstName, MDID"},
    {"FindRx", Gives::Rows, 1, "SELECT * FROM RXINFO WHERE RXInfoID = ?"},
    {"PTable", Gives::Rows, 0, "SELECT * FROM PriceTable ORDER BY PriceTableID"},
    {"PTableInfo", Gives::Rows, 1,
     "SELECT * FROM PriceTableInfo WHERE PriceTableID = ? ORDER BY BreakPoint"},
    {"RxPatient", Gives::Rows, 1,
     "SELECT * FROM RXINFO WHERE PatientID = ? AND COALESCE(Deleted, 0) = 0 "
     "ORDER BY Number, RefillNumber"},
    {"RxPatientNoVoid", Gives::Rows, 1,
     "SELECT * FROM RXINFO WHERE PatientID = ? AND COALESCE(Deleted, 0) = 0 AND "
     "COALESCE(Voided, 0) = 0 ORDER BY Number, RefillNumber"},
    {"RxPatientDrug", Gives::Rows, 2,
     "SELECT * FROM RXINFO WHERE PatientID = ? AND DrugID = ? AND COALESCE(Deleted, 0) = 0 "
     "ORDER BY Number, RefillNumber"},
    {"RxPatientDrugNoVoid", Gives::Rows, 2,
     "SELECT * FROM RXINFO WHERE PatientID = ? AND DrugID = ? AND COALESCE(Deleted, 0) = 0 "
     "AND COALESCE(Voided, 0) = 0 ORDER BY Number, RefillNumber"},
    {"FindInsCode", Gives::Rows, 1,
     "SELECT * FROM INSURANCE WHERE InsCode = ? AND COALESCE(Deleted, 0) = 0 ORDER BY InsID"},
    // The pharmacy's database keeps no monograph text: the drugs that carry the number.
    {"FindMonograph", Gives::Rows, 1, "SELECT * FROM DRUG WHERE MonoNum = ? ORDER BY Name, DrugID"},
    {"InsertPatient", Gives::NewKey, 15,
     "INSERT INTO PATIENT (LastName, FirstName, AddressLine1, AddressLine2, City, State, "
     "ZipCode, Country, Telephone, Fax, Gender, Birthdate, Notes, WorkPhone, EMail, "
     "DateChanged, Deleted) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, @NOW@, 0) "
     "RETURNING PatientID"},
    // Marked, as the patient record's own delete does, so that the patient's fills keep
    // pointing to a row.
    {"DeletePatient", Gives::Nothing, 1, "UPDATE PATIENT SET Deleted = 1 WHERE PatientID = ?"},
    {"NewRx", Gives::NewKey, 4,
     "INSERT INTO RXINFO (Number, RefillNumber, Date, RPhID, DateChanged, Deleted, Voided, "
     "OnHold) VALUES (?, ?, ?, ?, @NOW@, 0, 0, 0) RETURNING RXInfoID"},
};

Procedures::Procedure procedureOf(const HostQuery& query) {
    return [query](DbConnection& connection, const QVariantList& args) {
        QString statement = QString::fromLatin1(query.statement);
        statement.replace(QLatin1String("@NOW@"), connection.dialect().serverTime());
        QVariantList values;
        for (int i = 0; i < query.arguments; ++i) values.append(args.value(i));
        switch (query.gives) {
            case Gives::Rows:
                return Procedures::Result{QVariant(), connection.OpenRecordSet(statement, values)};
            case Gives::NewKey:
                return Procedures::Result{connection.Scalar(statement, values)};
            case Gives::Nothing:
                break;
        }
        connection.Execute(statement, values);
        return Procedures::Result{};
    };
}

}  // namespace

std::vector<std::pair<const char*, Procedures::Procedure>> hostProcedures() {
    std::vector<std::pair<const char*, Procedures::Procedure>> all;
    for (const HostQuery& query : kQueries) all.emplace_back(query.name, procedureOf(query));
    return all;
}

}  // namespace tvrx
