#pragma once

#include <QDateTime>
#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
template <class Record>
class ColumnTable;

// One plan held by one patient, a row of PATINS: the card details, and with them what the
// claims need of the plan itself (code, name, claim form, optional fields, Medicare), read
// whenever InsID is set.
class PATINS {
public:
    // True when the plan's ClaimFields name "MED"; set with InsID.
    bool Medicare = false;
    // The plan's optional claim fields; set with InsID, not a column of PATINS.
    QString ClaimFields;
    qint32 PatInsID = 0;
    // The patient's other insurance (another PATINS row).
    qint32 OPatInsID = 0;

    qint32 InsID() const { return insID_; }
    // Stores the plan and reads its code, name, form and claim fields. A plan that is not
    // there reads as "MISSING", "NEED TO RECHOOSE INSURANCE", so the user picks one again.
    void setInsID(qint32 value);

    qint32 PatientID = 0;
    // Written to PATINS, but read from the plan.
    QString InsCode;
    QString GroupNumber;
    QString InsuranceGroup;
    // "H", "S", "C", "O", or a code of the plan's own.
    QString Relationship;
    QString CardNumber;
    // First name, blank, last name.
    QString SubscribersName;
    QDateTime ExpDate;
    QString PersonNumber;
    QString Location;
    QString OtherCoverage;
    QString Clarification;

    // The plan's claim form, or "NA" when the plan is missing.
    QString Version() const { return version_; }
    // The plan's name.
    QString Name() const { return name_; }

    QString OtherPayerCoverageType;
    QString OtherPayerAmountPaidQualifier;

    PATINS();

    std::shared_ptr<DbConnection> Connection() const;
    void setConnection(std::shared_ptr<DbConnection> connection);

    // Makes a new, empty row and takes its key. The members are written by a later Update.
    void Insert();
    void Update();
    // Reads the row of PatInsID; false, with the members cleared, when there is none.
    bool GetData();
    // Removes the row.
    void Delete();

private:
    friend struct PatinsColumns;

    qint32 insID_ = 0;
    QString version_;
    QString name_;
};

// The coverage row's columns as the record reads and writes them, in the order the update
// writes them (session/data/ColumnTable.h).
const ColumnTable<PATINS>& patinsColumns();

}  // namespace tvrx
