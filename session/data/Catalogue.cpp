#include "session/data/Catalogue.h"

#include "session/data/AutoRefillDefaults.h"
#include "session/data/DbConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QRegularExpression>

namespace tvrx {

namespace {

using Kind = Catalogue::Kind;

constexpr const char* kUcf =
    "SELECT RXINFO.Number, RXINFO.LogID, RXINFO.Date, RXINFO.Qty, RXINFO.Price, RXINFO.DS, "
    "RXINFO.Patient, RXINFO.Doctor, RXINFO.Drug, RPH.LastName, RPH.FirstName, RPH.MI, "
    "RPH.License, PATINS.GroupNumber, PATINS.Relationship, PATINS.CardNumber, "
    "PATINS.SubscribersName, PATIENT.AddressLine1, PATIENT.City, PATIENT.State, "
    "PATIENT.ZipCode, PATIENT.Telephone, PATIENT.Gender, PATIENT.Birthdate, PHYSIC.DEA, "
    "DRUG.Dosage, DRUG.Strength FROM RXINFO LEFT OUTER JOIN PATIENT ON RXINFO.PatientID = "
    "PATIENT.PatientID LEFT OUTER JOIN RPH ON RXINFO.RPhID = RPH.RPhID LEFT OUTER JOIN PATINS "
    "ON RXINFO.PatInsID = PATINS.PatInsID LEFT OUTER JOIN PHYSIC ON RXINFO.MDID = PHYSIC.MDID "
    "LEFT OUTER JOIN DRUG ON RXINFO.DrugID = DRUG.DrugID Where RXINFO.RxInfoID = ?";

constexpr const char* kCallDoc =
    "SELECT STORE.Name, STORE.AddressL1, STORE.AddressL2, STORE.City, STORE.State, STORE.Zip, "
    "STORE.Phone, STORE.Fax, STORE.Email, STORE.WebAddress, RXINFO.Number, RXINFO.Date, "
    "RXINFO.Qty, RXINFO.Patient, RXINFO.Doctor, RXINFO.Drug, RXINFO.SIG, PHYSIC.AddressLine1, "
    "PHYSIC.City AS DocCity, PHYSIC.State AS DocState, PHYSIC.Zip AS DocZip, PHYSIC.Telephone, "
    "PHYSIC.FaxNumber, PATIENT.AddressLine1 AS PatAddress, PATIENT.City AS PatCity, "
    "PATIENT.State AS PatState, PATIENT.ZipCode, PATIENT.Telephone AS PatPhone, "
    "PATIENT.WorkPhone FROM RXINFO LEFT OUTER JOIN PHYSIC ON RXINFO.MDID = PHYSIC.MDID LEFT "
    "OUTER JOIN PATIENT ON RXINFO.PatientID = PATIENT.PatientID, STORE WHERE (RXINFO.RXInfoID "
    "= ?)";

// The catalogue as the host knows it. Procedure commands call the procedure of the same
// name (Procedures); those whose behaviour belongs to a later part of the library are
// listed here and registered there.
const std::vector<Catalogue::Command>& commandTable() {
    static const std::vector<Catalogue::Command> table{
        {"cmdInsurance", Kind::Text, "select * from insurance order by name", {}},
        {"cmdStore", Kind::Text, "Select * from STORE", {}},
        {"cmdDrugs", Kind::Table, "DRUG", {}},
        {"cmdOptions", Kind::Table, "Options", {}},
        {"dbo_FindPatients", Kind::Procedure, "dbo.FindPatients", {"@LName", "@FName"}},
        {"dbo_FindDoctors", Kind::Procedure, "dbo.FindDoctors", {"@LName", "@FName"}},
        {"dbo_MaxRxNumber", Kind::Procedure, "dbo.MaxRxNumber", {}},
        {"dbo_FindRx", Kind::Procedure, "dbo.FindRx", {"@ID"}},
        {"dbo_MaxRefill", Kind::Procedure, "dbo.MaxRefill", {"Number"}},
        {"dbo_PatientIns", Kind::Procedure, "dbo.PatientIns", {"@ID"}},
        {"dbo_PTable", Kind::Procedure, "dbo.PTable", {}},
        {"dbo_PTableInfo", Kind::Procedure, "dbo.PTableInfo", {"@ID"}},
        {"dbo_FindRxNumberAll", Kind::Procedure, "dbo.FindRxNumberAll", {"@Number"}},
        {"dbo_FindRxNumber", Kind::Procedure, "dbo.FindRxNumber", {"@Number"}},
        {"dbo_RxPatient", Kind::Procedure, "dbo.RxPatient", {"@ID"}},
        {"dbo_RxPatientDrug", Kind::Procedure, "dbo.RxPatientDrug", {"@ID", "@DrugID"}},
        {"dbo_RxPatientDrugNoVoid", Kind::Procedure, "dbo.RxPatientDrugNoVoid", {"@ID", "@DrugID"}},
        {"dbo_RxPatientNoVoid", Kind::Procedure, "dbo.RxPatientNoVoid", {"@ID"}},
        {"PatAll", Kind::Text, "Select * from PatAll", {}},
        {"PatIns", Kind::Text, "Select * from PatIns", {}},
        {"dbo_FindInsCode", Kind::Procedure, "dbo.FindInsCode", {"Code"}},
        {"Patients", Kind::Text, "Select * from Patient", {}},
        {"dbo_InsertPatient",
         Kind::Procedure,
         "dbo.InsertPatient",
         {"@LName", "@FName", "@AddressLine1", "@AddressLine2", "@City", "@State", "@ZipCode",
          "@Country", "@Telephone", "@Fax", "@Gender", "@Birthdate", "@Notes", "@WorkPhone",
          "@EMail"}},
        {"Doctors", Kind::Text, "Select * From Physic order by LastName, FirstName", {}},
        {"dbo_FindMonograph", Kind::Procedure, "dbo.FindMonograph", {"@MonoNum"}},
        {"dbo_DeletePatient", Kind::Procedure, "dbo.DeletePatient", {"@PatientID"}},
        {"dbo_NewRx", Kind::Procedure, "dbo.NewRx", {"@Number", "@Refill", "@rxdate", "@RPhID"}},
        {"dbo_AllAutoRefill", Kind::Procedure, "dbo.AllAutoRefill", {}},
        {"dbo_DeleteRx", Kind::Procedure, "dbo.DeleteRx", {"@RxInfoID"}},
        {"PatientByID", Kind::Text, "Select * From Patient where PatientID = ?", {"Param1"}},
        {"DoctorByID", Kind::Text, "Select * from PHYSIC where MDID = ?", {"Param1"}},
        {"InsuranceByID",
         Kind::Text,
         "Select InsCode, Phone, DaysSupply, Basis, Form, ID, UandC, DoctorID, OnLineLimit, "
         "OnLinePhone, Device, ModemSpeed, DB, SB, Parity, BIN, ProcNumb, OnLine, Internet from "
         "Insurance where InsID = ?",
         {"Param1"}},
        {"InsNameCode", Kind::Text, "Select InsID, InsCode, Name from INSURANCE Order By Name", {}},
        {"UCF", Kind::Text, kUcf, {"Param1"}},
        {"CallDoc", Kind::Text, kCallDoc, {"Param1"}},
        {"dbo_NewRefill",
         Kind::Procedure,
         "dbo.NewRefill",
         {"identity", "Number", "Refill",       "PatID",    "Patient", "PatInsID", "MDID",
          "Doc",      "Drug",   "DrugID",       "Cpd",      "Qty",     "Refills",  "QtyRemain",
          "Cost",     "Price",  "Copay",        "SIG",      "rxdate",  "LogID",    "DS",
          "RPhID",    "TechID", "PriceTableID", "SigCodes", "Schedule"}},
        {"NewPatient", Kind::Procedure, "NewPatient", {}},
        {"NewDrug", Kind::Procedure, "NewDrug", {}},
        {"NewDoc", Kind::Procedure, "NewDoc", {}},
        {"NewInsurance", Kind::Procedure, "NewInsurance", {}},
        {"dbo_NewPatIns", Kind::Procedure, "dbo.NewPatIns", {}},
        {"DrugStockByID",
         Kind::Text,
         "SELECT DrugID, Stock, MinReorderQty, ParQty, PackageSize FROM DRUG WHERE (DrugID = ?)",
         {"Param1"}},
        {"WantbookAdjust",
         Kind::Updatable,
         "Select DrugID, Date, OrderQty from WANTBOOK Where DrugID = ?",
         {"Param1"}},
        {"dbo_VoidRefill", Kind::Procedure, "dbo.VoidRefill", {"@Number", "@Refill"}},
        {"RPhByID", Kind::Text, "Select * From RPh where RPhID = ?", {"Param1"}},
    };
    return table;
}

// The record sets that give their new rows values of their own.
struct NewRowDefaults {
    const char* command;
    void (*apply)(RecordSet& row);
};
const NewRowDefaults kNewRowDefaults[] = {
    {"dbo_AllAutoRefill", applyAutoRefillDefaults},
};

// "Select columns from table Where condition" opened as an updatable result.
RecordSet openUpdatable(DbConnection& connection, const QString& statement,
                        const QVariantList& params) {
    static const QRegularExpression form(
        QStringLiteral(R"(^\s*select\s+(.+?)\s+from\s+(\w+)(?:\s+where\s+(.+))?\s*$)"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch parts = form.match(statement);
    if (!parts.hasMatch()) {
        fail(err::NotUpdatable,
             QStringLiteral("The statement is not one over a single table: %1").arg(statement));
    }
    return connection.OpenUpdatable(parts.captured(2), parts.captured(1), parts.captured(3),
                                    params);
}

}  // namespace

Catalogue::Catalogue() : rxdb_(std::make_unique<DbConnection>()) {}

Catalogue::~Catalogue() = default;

const std::vector<Catalogue::Command>& Catalogue::commands() {
    return commandTable();
}

const Catalogue::Command* Catalogue::command(const QString& name) {
    for (const Command& entry : commandTable()) {
        if (name.compare(QLatin1String(entry.name), Qt::CaseInsensitive) == 0) return &entry;
    }
    return nullptr;
}

void Catalogue::Run(const QString& name, const QVariantList& params) {
    const Command* entry = command(name);
    if (!entry) fail(err::ItemNotFound);
    const QString key = QString::fromLatin1(entry->name);
    RecordSet& rows = results_[key];
    if (rows.State() == 1) fail(err::ObjectOpen);
    const QString source = QString::fromLatin1(entry->source);
    switch (entry->kind) {
        case Kind::Text:
            rows = rxdb_->OpenRecordSet(source, params);
            break;
        case Kind::Table:
            rows = rxdb_->OpenRecordSet(QStringLiteral("SELECT * FROM ") + source, params);
            break;
        case Kind::Procedure: {
            Procedures::Result result = Procedures::call(*rxdb_, source, params);
            returnValues_[key] = result.ReturnValue;
            rows = std::move(result.rows);
            break;
        }
        case Kind::Updatable:
            rows = openUpdatable(*rxdb_, source, params);
            break;
    }
    for (const NewRowDefaults& defaults : kNewRowDefaults) {
        if (key == QLatin1String(defaults.command) && rows.Updatable())
            rows.setNewRowDefaults(defaults.apply);
    }
}

RecordSet& Catalogue::rs(const QString& name) {
    const Command* entry = command(name);
    if (!entry) fail(err::ItemNotFound);
    return results_[QString::fromLatin1(entry->name)];
}

QVariant Catalogue::returnValue(const QString& name) const {
    const Command* entry = command(name);
    if (!entry) fail(err::ItemNotFound);
    const auto found = returnValues_.find(QString::fromLatin1(entry->name));
    return found == returnValues_.end() ? QVariant() : found->second;
}

}  // namespace tvrx
