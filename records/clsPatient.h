#pragma once

#include "session/text/ZeroDate.h"

#include <QDateTime>
#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
class PATINS;
template <class Record>
class ColumnTable;

// One row of PATIENT: a patient, or an employer that patients point to by EmployerID.
// Every column is a plain property of the same name; the operations work over the
// session's main connection. The eligibility workflow of the same class is defined in
// eligibility/.
class clsPatient {
public:
    // Loads every property from the row of PatientID; no row changes nothing. A time-out
    // shows the "Connection Failure" box and ends the load.
    void GetData();
    // Writes every property to the row of PatientID. A birth or injury date before 1700
    // becomes the zero date first.
    void Update();
    // Makes a new row, takes its key and empties the object except for its dates.
    void Insert();
    // Removes the row with Clean; otherwise only marks it deleted.
    void Delete(bool Clean = false);
    // Makes the connection the session's main connection (write-only).
    void setConnection(std::shared_ptr<DbConnection> connection);

    qint32 PatientID = 0;
    QString LastName;
    QString FirstName;
    QString MI;
    QString AddressLine1;
    QString AddressLine2;
    QString City;
    QString State;
    QString ZipCode;
    QString Country;
    QString BillingAddress;
    QString BillingCity;
    QString BillingState;
    QString BillingZipCode;
    QString Telephone;
    QString Fax;
    QString Gender;
    QDateTime Birthdate = conv::ZeroDate();
    QString AccountNumber;
    QString MedicalRecordNum;
    QString Unit;
    QString Room;
    QString Allergies;
    QString Location;
    double WeightKg = 0;
    double HeightCm = 0;
    QString Notes;
    qint16 ChargeAccount = 0;
    qint32 ARCustomerID = 0;
    QString ForeignSigs;
    QString MarriageStatus;
    QString StudentStatus;
    QString WorkPhone;
    QString EMail;
    qint32 PatInsID = 0;
    qint32 PatAllID = 0;
    QString Conditions;
    qint16 EasyOpen = 0;
    QString SSN;
    qint32 PriceTableID = 0;
    QString AllergiesLarge;
    QString Diagnosis;
    qint32 EmployerID = 0;
    QString InjuryType;
    QString QBListID;
    QDateTime InjuryDate = conv::ZeroDate();
    qint16 Spanish = 0;
    qint16 HIPPA = 0;
    qint16 AutoCharge = 0;
    qint32 FacilityID = 0;
    qint32 MDID = 0;
    QDateTime AdmitDate = conv::ZeroDate();
    QString CCNumber;
    QString CCExpMonth;
    QString CCExpYear;
    QString CCName;
    QString CCAddress;
    QString CCZip;
    qint16 CCAddressSame = 0;
    qint16 Pregnancy = 0;
    qint16 Smoker = 0;
    qint32 ImportID = 0;

    // ---- Asking a payer (eligibility/CheckEligibility.cpp) ----------------------------
    // Asks the payer of the coverage whether this patient is covered on a date the user
    // types: one "E1" request through the exchange directory, then the answer read and
    // shown as a report. An empty text, or "ERROR: Insurance not found!" when the
    // coverage's plan is not in INSURANCE. The patient's own columns must be loaded.
    // DebugMode changes nothing.
    QString CheckEligibility(const PATINS& oPatIns, const QString& sTVIDirectory,
                             const QString& sPrinter, const QString& NABP,
                             bool DebugMode = false);
    // ---- end of asking a payer ---------------------------------------------------------

    // Reads the payer's answer file and shows the eligibility report
    // (eligibility/EligibilityAnswer.cpp).
    bool ParseClaimFile(const QString& sClaimFile);

    // The pharmacy's number and the report's printer, kept by the eligibility request.
    QString SelectedNABP;
    QString SelectedPrinter;
};

// The patient row's columns as GetData selects them (session/data/ColumnTable.h).
const ColumnTable<clsPatient>& patientColumns();

}  // namespace tvrx
