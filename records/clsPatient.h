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
// session's main connection. The same class asks the patient's payers about coverage
// (eligibility/).
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
                             const QString& sPrinter, const QString& NABP, bool DebugMode = false);
    // ---- end of asking a payer ---------------------------------------------------------

    // ---- Eligibility: the payer's answer, its report, and the plans it names ----------
    // (eligibility/EligibilityAnswer.cpp, eligibility/AddFromEligibility.cpp)

    // The pharmacy's number and the report's printer, kept by the eligibility request.
    QString SelectedNABP;
    QString SelectedPrinter;

    // Reads the payer's answer file, draws the eligibility report, works out which of the
    // plans it names the pharmacy and the patient have, and shows the report; true when it
    // was shown. A refused answer leaves its reason in ErrorMessage.
    bool ParseClaimFile(const QString& sClaimFile);
    // Creates the named primary (or secondary) plan from the plan directory.
    bool AddInsurance(bool Primary = false);
    // Attaches the named primary (or secondary) plan, known to the pharmacy, to the patient.
    bool AddPatientInsurance(bool Primary = false);

    // What the latest answer named; only ever turned on, never off, on one object.
    bool PrimaryConfigured() const { return eligibility_.PrimaryConfigured; }
    bool PatientPrimaryConfigured() const { return eligibility_.PatientPrimaryConfigured; }
    bool PrimaryLookupAvailable() const { return eligibility_.PrimaryLookupAvailable; }
    bool SecondaryConfigured() const { return eligibility_.SecondaryConfigured; }
    bool PatientSecondaryConfigured() const { return eligibility_.PatientSecondaryConfigured; }
    bool SecondaryLookupAvailable() const { return eligibility_.SecondaryLookupAvailable; }
    QString PrimaryBIN() const { return eligibility_.Primary.BIN; }
    QString PrimaryPCN() const { return eligibility_.Primary.PCN; }
    QString SecondaryBIN() const { return eligibility_.Secondary.BIN; }
    QString SecondaryPCN() const { return eligibility_.Secondary.PCN; }
    QString ErrorMessage() const { return eligibility_.ErrorMessage; }
    // The card values of each named plan, which adding it to the patient writes.
    QString PrimaryGroupNumber() const { return eligibility_.Primary.GroupNumber; }
    QString PrimaryMemberID() const { return eligibility_.Primary.MemberID; }
    QString PrimaryPersonCode() const { return eligibility_.Primary.PersonCode; }
    QString PrimaryInsPhone() const { return eligibility_.Primary.InsPhone; }
    QString SecondaryGroupNumber() const { return eligibility_.Secondary.GroupNumber; }
    QString SecondaryMemberID() const { return eligibility_.Secondary.MemberID; }
    QString SecondaryPersonCode() const { return eligibility_.Secondary.PersonCode; }
    QString SecondaryInsPhone() const { return eligibility_.Secondary.InsPhone; }

    // One plan of the answer, as the payer's message lists it.
    struct NamedPlan {
        QString BIN;
        QString PCN;
        QString GroupNumber;
        QString MemberID;
        QString PersonCode;
        QString InsPhone;
    };
    struct EligibilityState {
        bool PrimaryConfigured = false;
        bool PatientPrimaryConfigured = false;
        bool PrimaryLookupAvailable = false;
        bool SecondaryConfigured = false;
        bool PatientSecondaryConfigured = false;
        bool SecondaryLookupAvailable = false;
        NamedPlan Primary;
        NamedPlan Secondary;
        QString ErrorMessage;
    };
    // All of the above at once.
    const EligibilityState& eligibilityState() const { return eligibility_; }

private:
    friend class EligibilityAnswer;

    // The value behind the label of one entry of the payer's list ("BIN:610014").
    static QString ParseElgField(const QString& sField);

    EligibilityState eligibility_;
};

// The patient row's columns as GetData selects them (session/data/ColumnTable.h).
const ColumnTable<clsPatient>& patientColumns();

}  // namespace tvrx
