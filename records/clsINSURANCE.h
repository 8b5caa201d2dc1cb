#pragma once

#include "session/text/Currency.h"

#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
template <class Record>
class ColumnTable;

// One insurance plan, a row of INSURANCE: its address block, fee and copay rules, the
// claim form it takes and how claims reach it. The row also carries a Deleted flag, which
// no property shows: a deleted plan stays in the table, and creating the same plan again
// from the plan directory can bring it back.
class clsINSURANCE {
public:
    // The key. A 16-bit member, although new keys come as 32-bit numbers: a key above
    // 32,767 does not fit and is reported as an overflow.
    qint16 InsID = 0;
    QString InsCode;
    QString Name;
    QString Address;
    QString City;
    QString State;
    QString Zip;
    QString Phone;
    QString Fax;
    QString Notes;
    QString Contact;
    Currency Fee = 0;
    qint16 FeePS = 0;
    Currency Copay = 0;
    qint16 CopayPS = 0;
    Currency GenericFee = 0;
    Currency GenericCopay = 0;
    qint16 GenCopayPS = 0;
    bool DaysSupply = false;
    QString Basis;
    // The claim version: "3B", "3C", "3A", "32", "40", "51".
    QString Form;
    // The pharmacy's identifier at this plan, as a rule its NABP number.
    QString ID;
    QString Invoice;
    bool UandC = false;
    bool PatCopay = false;
    // Which prescriber identifier the plan takes, such as "DEA".
    QString DoctorID;
    // Most prescriptions in one transmission.
    qint16 OnLineLimit = 0;
    QString OnLinePhone;
    QString Device;
    QString ModemSpeed;
    QString DB;
    QString SB;
    QString Parity;
    QString BIN;
    // The processor control number.
    QString ProcNumb;
    qint16 BrandPT = 0;
    qint16 GenericPT = 0;
    bool OnLine = false;
    bool Internet = false;
    QString VendorID;
    // Comma-separated optional claim fields the plan wants; "MED" marks a Medicare plan.
    QString ClaimFields;
    // Qualifier of ID; "07" when empty.
    QString IDQualifier;

    std::shared_ptr<DbConnection> Connection() const;
    void setConnection(std::shared_ptr<DbConnection> connection);

    // Reads the row of InsID; false (and InsID 0) when there is none.
    bool GetData();
    // Writes the members to the row of InsID, if it exists.
    void Update();
    // Marks the row deleted; it stays in the table.
    void Delete();
    // Loads the plan with this BIN and processor control number, deleted or not.
    bool FindByBinAndPcn(const QString& sBIN, const QString& sPCN);

    // Creates a plan for the user, offering a search of the plan directory first. Returns
    // the key of the plan the object holds now, or 0; FoundExisting becomes true when the
    // plan was in the table already.
    qint32 Insert(const QString& NABP, bool& FoundExisting);
    // Creates the plan with this BIN and processor control number from the directory,
    // without questions unless it was deleted. Returns its key, or 0.
    qint32 InsertFromLookup(const QString& NABP, const QString& sBIN, const QString& sPCN);

private:
    // The members of a new plan, set before each creation.
    void setDefaults(const QString& NABP, const QString& claimFields);
};

// The plan's columns as the record reads and writes them (session/data/ColumnTable.h).
const ColumnTable<clsINSURANCE>& insuranceColumns();

}  // namespace tvrx
