#pragma once

#include "session/text/ZeroDate.h"

#include <QDateTime>
#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
class RecordSet;
template <class Record>
class ColumnTable;

// One row of DRUG with the drug's own dosing times from DrugTimes (rows that carry a
// PatientID are a patient's times and are left alone). The package size is kept twice:
// exactly in dPkgSize and as a whole number in PackageSize.
class clsDrug {
public:
    // Loads the row of DrugID and its dosing times; an unknown DrugID becomes 0.
    void GetData();
    // Writes the row and adds, changes or removes the drug's dosing times.
    void Update();
    // Makes a new row and takes its key, if the main connection can be opened.
    void Insert();
    void Delete();
    void setConnection(std::shared_ptr<DbConnection> connection);

    qint32 DrugID = 0;
    QString Name;
    QString Dosage;
    double PackageSize = 0;
    QString NDC;
    // The controlled-substance class as a digit, or nothing.
    QString Schedule;
    double AWP = 0;
    qint16 AWPUpdate = 0;
    double Cost = 0;
    qint16 CostUpdate = 0;
    double MAC = 0;
    qint16 MACUpdate = 0;
    qint16 Generic = 0;
    qint32 PriceTableID = 0;
    QDateTime Expiration = conv::ZeroDate();
    QString Lot;
    QString GCN;
    qint16 Compound = 0;
    double Stock = 0;
    double MinReorderQty = 0;
    double ParQty = 0;
    qint32 PEC = 0;
    QString Note;
    qint32 MonoNum = 0;
    QString GenericName;
    QString BrandName;
    QString RouteCode;
    QString Strength;
    QString DrugClass;
    QString CategoryCode;
    qint16 DESI = 0;
    qint16 UD = 0;
    QString ObsoleteDate;
    QString Units;
    QString Therapy;
    QString AWPDate;
    QString CostDate;
    QString MACDate;
    qint32 ImportID = 0;
    double DecSize = 0;
    QString HCPC;
    QString TXR;
    QString ItemNumber;
    // Stored in the column MFR.
    QString Manufacturer;
    qint16 EnableAutoFill = 0;
    QString DefaultSig;
    double DefaultQty = 0;
    qint16 DefaultRefills = 0;
    qint16 DefaultDS = 0;
    QString DrugTimes;

private:
    void saveTimes(RecordSet& times) const;
};

// The drug row's columns (session/data/ColumnTable.h).
const ColumnTable<clsDrug>& drugColumns();

}  // namespace tvrx
