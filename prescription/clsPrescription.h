#pragma once

#include "session/text/ZeroDate.h"

#include <QDateTime>
#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
class Frame;
class RecordSet;
class clsClaimResponse;
class clsDoc;
class clsDrug;
class clsPatient;
template <class Record>
class ColumnTable;
namespace claims {
struct StoredTexts;
}

// How a prescription object came to be loaded; it steers the change log and the fill-mode
// text. It is never stored. A fresh object holds 0, none of these: a fill that a host
// reads and saves is no new prescription, and its first save is logged.
enum rxTypes { NewRx = 1, RefillRx = 2, EditRx = 3, GenerateRx = 4, ReversedRx = 5 };

// One fill of a prescription: one row of RXINFO. A prescription number owns one original
// fill (RefillNumber 0) and its refills (1, 2, ...). Reading a fill also reads its
// patient, prescriber and drug; every change of the fill's key values after the first
// save leaves a row in LOG_RX.
class clsPrescription {
public:
    clsPrescription();
    ~clsPrescription();
    clsPrescription(const clsPrescription&) = delete;
    clsPrescription& operator=(const clsPrescription&) = delete;

    // Loads the row of RXInfoID with its original fill's date, quantity and refills and
    // what was left as of this fill. A missing row leaves the object as it was.
    void GetData();
    // Writes the object to its row; on a refill the original's date and quantity go to
    // the original's row first. Updated and the change log follow even when the
    // statement failed.
    void Update();
    void ClearResponse();
    void ClearOtherResponse();

    // The body of this prescription's claim, after the header, in the layout the plan's
    // Form picks; empty when the claim must not go out (the user has been told why). With
    // SendingOther it goes to the patient's other insurance, whose row is read here.
    // DebugMode silences the box of an other insurance not found. A retail price of 0
    // becomes the price. (claims/BuildClaim.cpp)
    QString BuildClaim(RecordSet& rsIns, bool SendingOther = false, bool DebugMode = false);
    // The whole text of this prescription's reversal, start byte included; empty when the
    // other insurance is not found or a part of the text failed.
    // (claims/BuildReverseClaim.cpp)
    QString BuildReverseClaim(RecordSet& rsIns, bool SendingOther = false);
    void setConnection(std::shared_ptr<DbConnection> connection);

    // The primary and the secondary payer's answer to the latest claim; never empty.
    std::shared_ptr<clsClaimResponse> Response();
    std::shared_ptr<clsClaimResponse> OtherResponse();
    void setResponse(std::shared_ptr<clsClaimResponse> value);
    void setOtherResponse(std::shared_ptr<clsClaimResponse> value);
    // The records the fill points to, as loaded by the PatientID, MDID and DrugID
    // setters; before that an empty record with key 0 that was not read.
    std::shared_ptr<clsPatient> PatientClass();
    std::shared_ptr<clsDoc> DoctorClass();
    std::shared_ptr<clsDrug> DrugClass();

    qint32 PatientID() const { return m_lPatientID; }
    void setPatientID(qint32 value);
    qint32 MDID() const { return m_lMDID; }
    void setMDID(qint32 value);
    qint32 DrugID() const { return m_lDrugID; }
    // Also takes the drug's price table into DrugPT and its generic flag into Generic.
    void setDrugID(qint32 value);

    // The refills left as of this fill, with "+" when more quantity remains than the
    // whole refills show.
    QString RefillsLeft() const;
    // The days supply; the text "Null" that old rows hold reads as empty.
    QString DS() const;
    void setDS(const QString& value) { m_sDS = value; }
    // The product code qualifier if it is one a claim accepts (0 to 26 or 99), "0" for
    // another number, empty for a text that is no number.
    QString ProductIDQualifier() const;
    void setProductIDQualifier(const QString& value) { m_sProductIDQualifier = value; }

    // ---- New prescriptions and refills (prescription/NewPrescription.cpp, Refill.cpp) ----

    // Starts a prescription under the next number with its original fill, made by the
    // pharmacist in RPh, and loads it; StartNumber is accepted and not used. False, and the
    // object as it was, when no number could be had.
    bool NewPrescription(qint32 RPhID, qint32 StartNumber, qint32 TechID = 0);
    // Refills prescription lRxNumber under the pharmacy's refill rules, asking the user
    // where a rule objects, and loads the new fill. -1 when the fill was made; 0 when not
    // (no such number, a rule refused, the user cancelled, the fill could not be stored);
    // 10 when the user chose to print the call-doctor form, 11 to fax the doctor.
    // lRxNumber comes back as the number filled when the user followed a newer number or
    // generated a new one. The caller prices the fill and calls Update.
    qint16 RefillPrescription(qint32 RPhID, qint32 StartNumber, qint32& lRxNumber,
                              qint32 lPatientID = 0, qint32 TechID = 0,
                              bool ControlIIOveride = false);
    // ---- Edit and a new number (prescription/Edit.cpp, Generate.cpp) ----

    // Loads fill lRefillNumber of prescription lRxNumber for change: 99 the last fill, -1
    // the one the user picks in the refill finder; a number with one fill loads it whatever
    // lRefillNumber says. lPatientID above 0 refuses a prescription of another patient.
    // Rebuilds the stored payer answers, offers to recover a deleted fill and gives a fill
    // whose pharmacist is gone (or none) RPhID. True when a fill was loaded and the user
    // did not cancel.
    bool EditPrescription(qint32 lRxNumber, qint32 lPatientID = 0, qint16 lRefillNumber = -1,
                          qint32 RPhID = 0, qint32 TechID = 0);
    // Moves prescription lRxNumber to a new number (the next after the highest, at least
    // StartNumber), which comes back in lRxNumber: a new original fill with the last
    // fill's quantity and what remained of it, that remembers the old number. The caller
    // calls Update. lPatientID is accepted and not used.
    bool GeneratePrescription(qint32 RPhID, qint32 StartNumber, qint32& lRxNumber,
                              qint32 lPatientID = 0, qint32 TechID = 0);
    // How this object came to be, for labels: "NEW ", "REFILL ", "EDIT ", "GENERATED ",
    // or "?".
    QString FillMode() const;

    // ---- Pricing (prescription/Pricing.cpp) ----

    // Chooses the fill's retail table (CurrentPT) and copay table (CopayPT), or a fixed
    // copay from the plan, by the plan, the drug, the patient and the host's defaults for
    // generic and brand drugs. Runs before GetRetail and GetCopay.
    void SetPriceTables(qint32 nDefGen, qint32 nDefBrand);
    // The price of the amounts by table lPT (PriceTableID when lPT is below 1, and lPT
    // then holds it); 0 when there is none.
    double GetCustomPrice(double dAWP, double dCost, qint32& lPT, double dQty);
    // The retail price by CurrentPT (which becomes PriceTableID when it is below 1).
    double GetRetail(double dAWP, double dCost, double dQty);
    // The plan's fixed Copay, or the price by CopayPT when SetPriceTables chose a table.
    double GetCopay(double dAWP, double dCost, double dQty);

    // ---- Stock, void, hold and delete (prescription/Wantbook.cpp, Void.cpp) ----

    // Moves the drug's stock by the sum of the two quantities (a sale passes a negative
    // adjustQty; a change of quantity passes the earlier quantity in previousQty to cancel
    // it) and keeps the drug's one line on the want list, for drugs with a reorder point.
    void AdjustWantbook(double adjustQty, double previousQty = 0);
    // Asks, then voids, holds or deletes the loaded fill, or lifts its void and hold; true
    // when one of them was carried out. The object is not reloaded.
    bool VoidPrescription();
    // Gives the quantity back to stock, removes the fill's ingredients and marks the row
    // deleted and voided, or removes it when Override is true; then logs the changes.
    void Delete(bool Override = false);

    bool Updated() const { return m_bUpdated; }
    rxTypes PrescriptionType{};

    qint32 RXInfoID = 0;
    qint32 Number = 0;
    qint32 RefillNumber = 0;
    qint32 LogID = 0;
    QDateTime DateFilled = conv::ZeroDate();
    double Qty = 0;
    double MetricQty = 0;
    double Price = 0;
    double RetailPrice = 0;
    double Copay = 0;
    double QtyRemain = 0;
    QString Patient;
    QString Doctor;
    qint32 PatInsID = 0;
    qint32 InsID = 0;
    QString SIG;
    qint16 Compound = 0;
    QString Drug;
    double Refills = 0;
    qint32 OriginalRefills = 0;
    double Cost = 0;
    qint32 PriceTableID = 0;
    double AWP = 0;
    qint16 PA = 0;
    QString PANumber;
    QString DNDC;
    bool Voided = false;
    bool OnHold = false;
    QDateTime OriginalDate = conv::ZeroDate();
    double OriginalQty = 0;
    QString DAWField;
    qint32 RPh = 0;
    qint32 Tech = 0;
    QString Schedule;
    QString Notes;
    QString SigCodes;
    QString OtherDenial;
    QString DURConflict;
    QString DURIntervention;
    QString DUROutcome;
    QString AuthNumber;
    qint16 PAID = 0;
    bool ARCharge = false;
    bool OnLine = false;
    QString OnlineResult;
    QString Diagnosis;
    double OtherPayor = 0;
    QDateTime DenialDate = conv::ZeroDate();
    QString HCPC;
    qint16 Form = 0;
    QString ControlNumber;
    // Read with the fill, never written back by Update.
    qint16 Transferred = 0;
    QString QBTxnID;
    QString PAMC;
    QString DURData;
    QString OtherInsCode;
    QString EligibilityCode;
    QString OriginCode;
    QString LevelOfService;
    double GeneratedRx = 0;
    QString Units;
    QString InsData;
    qint16 FormulaID = 0;
    qint32 OPatInsID = 0;
    qint16 OInsPaid = 0;
    double OInsAmount = 0;
    double OInsCopay = 0;
    double PInsAmount = 0;
    double PInsCopay = 0;
    QString OAuthCode;
    QString OOnlineResult;
    QString OtherCoverage;
    QString OtherType;
    QString PaidQualifier;
    QDateTime OtherDate = conv::ZeroDate();
    qint16 Deleted = 0;
    QString OtherIDQualifier;
    QString OtherID;

    // Kept with the object, not in RXINFO.
    QString PrintDevice;
    qint16 NumberOfLabels = 0;
    bool ClaimReady = false;
    bool OtherClaimReady = false;
    qint16 OneFill = 0;
    bool ITXChecked = false;
    qint16 ITXLookBack = 90;
    QString Monograph;
    qint32 CurrentPT = 0;
    qint32 PatientPT = 0;
    qint32 DrugPT = 0;
    qint32 CopayPT = 0;
    bool Generic = false;

    // ---- Clinical alerts (prescription/ClinicalAlerts.cpp, PrescriptionImage.cpp) -----

    // Screens this fill's drug against the patient's fills of the last ITXLookBack days
    // (voided and deleted ones too) and shows a printed report per finding, one after
    // the other. Always false: the findings reach the user as reports.
    bool Interactions();
    // Screens the drug against the patient's recorded allergies and shows a
    // "PATIENT ALLERGY ALERT" box per finding. Always false.
    bool Allergies();
    // The scanned image of this prescription number; empty when there is none or when
    // this machine has no scanning component.
    QString RXImageFile();
    // Lets the user scan an image for this prescription number; false when this machine
    // has no scanning component.
    bool SetRXImageFile();

private:
    friend const ColumnTable<clsPrescription>& prescriptionColumns();
    friend struct PrescriptionLog;
    friend struct claims::StoredTexts;

    void readOriginalFill(Frame& frame, const RecordSet& rs);
    void readOriginalOfRefill(Frame& frame);
    void countRefillsUsed(Frame& frame, double refillCount);
    void updateOriginalOfRefill(Frame& frame);
    void SaveForLog();
    void AddLogEntry();
    bool Void_Rx(bool bVoid);

    qint32 m_lPatientID = 0;
    qint32 m_lMDID = 0;
    qint32 m_lDrugID = 0;
    qint32 m_lRefillsLeft = 0;
    QString m_sDS;
    QString m_sProductIDQualifier;
    bool m_bUpdated = false;

    std::shared_ptr<clsClaimResponse> m_Response;
    std::shared_ptr<clsClaimResponse> m_OtherResponse;
    std::shared_ptr<clsPatient> m_PatientClass;
    std::shared_ptr<clsDoc> m_DoctorClass;
    std::shared_ptr<clsDrug> m_DrugClass;

    // The pharmacist and technician that the latest edit of this object named; the log
    // rows carry them, 0 when the object was not edited.
    qint32 m_lEditRPhID = 0;
    qint32 m_lEditTechID = 0;

    // Whether GetCopay prices the copay by CopayPT (true) or gives the plan's fixed Copay.
    bool CopayFromTable = false;
    // The addend of the band the latest GetCustomPrice or GetRetail used.
    double LastMarkUpAddend = 0;

    // The change log's picture of the watched values as last read or logged.
    bool m_bSavedForLog = false;
    QDateTime m_dtLogDate = conv::ZeroDate();
    double m_dLogQty = 0;
    double m_dLogPrice = 0;
    double m_dLogCopay = 0;
    double m_dLogQtyRemain = 0;
    QString m_sLogDS;
    QString m_sLogPatient;
    QString m_sLogDoctor;
    QString m_sLogSIG;
    QString m_sLogDrug;

    // The drug both screens are about, as an NDC of digits only.
    QString currentNdc();
    // The path of the scanned image, as the scanning component last gave it.
    QString m_sRXImageFile;
};

// The fill row's columns (session/data/ColumnTable.h).
const ColumnTable<clsPrescription>& prescriptionColumns();

}  // namespace tvrx
