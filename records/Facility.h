#pragma once

#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
template <class Record>
class ColumnTable;

// One row of Facility: an institution whose patients the pharmacy serves, with its
// contact and the user name and password of its access to the system.
class Facility {
public:
    // Loads the row of FacilityID; a missing row leaves the object as it was.
    void GetData();
    void Update();
    // Makes a new row, takes its key and empties every text property.
    void Insert();
    void Delete();
    void setConnection(std::shared_ptr<DbConnection> connection);

    qint16 FacilityID = 0;
    QString Name;
    QString AddressL1;
    QString AddressL2;
    QString City;
    QString State;
    QString Zip;
    QString Phone;
    QString Fax;
    QString Contact;
    QString ContactPhone;
    QString Notes;
    QString UserName;
    QString Password;
};

// The facility row's columns (session/data/ColumnTable.h).
const ColumnTable<Facility>& facilityColumns();

}  // namespace tvrx
