#include "records/Facility.h"

#include "records/RecordForms.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

using C = Facility;
using R = ReadForm;
using W = WriteForm;

}  // namespace

// The columns in the order GetData reads them from the whole row; the key is not read.
const ColumnTable<Facility>& facilityColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("Facility"), QStringLiteral("FacilityID"),
        {
            {"FacilityID", member(&C::FacilityID), R::none(), W::none()},
            {"Name", member(&C::Name), R::text(), W::quotedDoubled()},
            {"AddressL1", member(&C::AddressL1), R::text(), W::quotedDoubled()},
            {"AddressL2", member(&C::AddressL2), R::text(), W::quotedDoubled()},
            {"City", member(&C::City), R::text(), W::quotedRaw()},
            {"State", member(&C::State), R::text(), W::quotedRaw()},
            {"Zip", member(&C::Zip), R::text(), W::quotedRaw()},
            {"Phone", member(&C::Phone), R::text(), W::quotedRaw()},
            {"Fax", member(&C::Fax), R::text(), W::quotedRaw()},
            {"Contact", member(&C::Contact), R::text(), W::quotedDoubled()},
            {"ContactPhone", member(&C::ContactPhone), R::text(), W::quotedRaw()},
            {"Notes", member(&C::Notes), R::text(), W::quotedDoubled()},
            {"UserName", member(&C::UserName), R::text(), W::quotedDoubled()},
            {"Password", member(&C::Password), R::text(), W::quotedDoubled()},
            {"DateChanged", records::presentTime<C>(), R::none(), W::value()},
        });
    return table;
}

// The whole row is selected; the key itself is not read back.
void Facility::GetData() {
    const ColumnTable<C>& table = facilityColumns();
    Frame frame("Facility:GetData");
    table.load(frame, table.selectAll(), FacilityID, *this, table.all());
}

void Facility::Update() {
    Frame frame("Facility:Update");
    facilityColumns().store(frame, *this, FacilityID);
}

// The key is 16-bit: a new key above 32,767 is a reported overflow, and the texts are
// emptied all the same.
void Facility::Insert() {
    if (!mdlMain::CheckConnection()) return;
    Frame frame("Facility:Insert");
    frame([&] {
        FacilityID = conv::IntegerFromDouble(
            Procedures::newKey(records::mainConnection(), QStringLiteral("NewFacility")));
    });
    for (QString* text : {&Name, &AddressL1, &AddressL2, &City, &State, &Zip, &Phone, &Fax,
                          &Contact, &ContactPhone, &Notes, &UserName, &Password})
        text->clear();
}

void Facility::Delete() {
    if (!mdlMain::CheckConnection()) return;
    Frame frame("Facility:Delete");
    frame([&] {
        records::mainConnection().Execute(
            QStringLiteral("DELETE FROM Facility WHERE FacilityID = ?"), {FacilityID});
    });
}

void Facility::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("Facility:Connection"));
}

}  // namespace tvrx
