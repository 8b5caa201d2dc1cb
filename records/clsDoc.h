#pragma once

#include "session/text/ZeroDate.h"

#include <QDateTime>
#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
template <class Record>
class ColumnTable;

// One row of PHYSIC, the prescriber file. Each operation first makes sure the main
// connection is open and does nothing when there is none.
class clsDoc {
public:
    // Loads the row of MDID; an unknown MDID leaves every property as it was.
    void GetData();
    void Update();
    // Makes a new row and takes its key; the row stays empty until Update.
    void Insert();
    // Removes the row, whatever prescriptions still point to it.
    void Delete();
    void setConnection(std::shared_ptr<DbConnection> connection);

    qint32 MDID = 0;
    QString LastName;
    QString FirstName;
    QString MI;
    QString Title;
    QString AddressLine1;
    QString AddressLine2;
    QString City;
    QString State;
    QString Zip;
    QString Telephone;
    QString Telephone2;
    QString FaxNumber;
    QDateTime DateLastSeen = conv::ZeroDate();
    QString Practice;
    QString Comments;
    QString DoctorCode;
    QString DEA;
    QString StateLic;
    QString Provider1;
    QString Provider2;
    double NumberOfScripts = 0;
    double PriceAmount = 0;
    double CostAmount = 0;
    QDateTime LastRxDate = conv::ZeroDate();
    QString EMail;
    qint32 ImportID = 0;
};

// The prescriber row's columns as GetData selects them (session/data/ColumnTable.h).
const ColumnTable<clsDoc>& docColumns();

}  // namespace tvrx
