#include "records/clsDoc.h"

#include "records/RecordForms.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Frame.h"

namespace tvrx {

namespace {

using C = clsDoc;
using R = ReadForm;
using W = WriteForm;

}  // namespace

// The columns in the order GetData selects and reads them, by position. The zip code and
// the telephones are read in their display forms and written back as the object holds
// them (a null, screened to the empty text, reads as an empty one).
const ColumnTable<clsDoc>& docColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("PHYSIC"), QStringLiteral("MDID"),
        {
            {"MDID", member(&C::MDID), R::nullScreen(0).at(0), W::none()},
            {"LastName", member(&C::LastName), R::text().at(1), W::quotedDoubled()},
            {"FirstName", member(&C::FirstName), R::text().at(2), W::quotedDoubled()},
            {"MI", member(&C::MI), R::text().at(3), W::quotedRaw()},
            {"Title", member(&C::Title), R::text().at(4), W::quotedRaw()},
            {"AddressLine1", member(&C::AddressLine1), R::text().at(5), W::quotedDoubled()},
            {"AddressLine2", member(&C::AddressLine2), R::text().at(6), W::quotedDoubled()},
            {"City", member(&C::City), R::text().at(7), W::quotedRaw()},
            {"State", member(&C::State), R::text().at(8), W::quotedRaw()},
            {"Zip", member(&C::Zip), records::zipOfText().at(9), W::quotedRaw()},
            {"Telephone", member(&C::Telephone), records::phoneOfText().at(10), W::quotedRaw()},
            {"Telephone2", member(&C::Telephone2), records::phoneOfText().at(11), W::quotedRaw()},
            {"FaxNumber", member(&C::FaxNumber), records::phoneOfText().at(12), W::quotedRaw()},
            {"DateLastSeen", member(&C::DateLastSeen), R::nullScreen(0).at(13), records::day()},
            {"Practice", member(&C::Practice), R::text().at(14), W::quotedRaw()},
            {"Comments", member(&C::Comments), R::text().at(15), W::quotedDoubled()},
            {"DoctorCode", member(&C::DoctorCode), R::text().at(16), W::quotedRaw()},
            {"DEA", member(&C::DEA), R::text().at(17), W::quotedRaw()},
            {"StateLic", member(&C::StateLic), R::text().at(18), W::quotedRaw()},
            {"Provider1", member(&C::Provider1), R::text().at(19), W::quotedRaw()},
            {"Provider2", member(&C::Provider2), R::text().at(20), W::quotedRaw()},
            {"NumberOfScripts", member(&C::NumberOfScripts), R::nullScreen(0).at(21), W::number()},
            {"PriceAmount", member(&C::PriceAmount), R::nullScreen(0).at(22), W::number()},
            {"CostAmount", member(&C::CostAmount), R::nullScreen(0).at(23), W::number()},
            {"LastRxDate", member(&C::LastRxDate), R::nullScreen(0).at(24), records::day()},
            {"EMail", member(&C::EMail), R::text().at(25), W::quotedRaw()},
            {"ImportID", member(&C::ImportID), R::nullScreen(0).at(26), W::number()},
            {"DateChanged", records::presentTime<C>(), R::none(), W::value()},
        });
    return table;
}

void clsDoc::GetData() {
    if (!mdlMain::CheckConnection()) return;
    const ColumnTable<C>& table = docColumns();
    Frame frame("clsDoc:GetData");
    table.load(frame, table.selectList(table.selected()), MDID, *this, table.selected());
}

void clsDoc::Update() {
    if (!mdlMain::CheckConnection()) return;
    Frame frame("clsDoc:Update");
    docColumns().store(frame, *this, MDID);
}

void clsDoc::Insert() {
    if (!mdlMain::CheckConnection()) return;
    Frame frame("clsDoc:Insert");
    frame([&] { MDID = Procedures::newKey(records::mainConnection(), QStringLiteral("NewDoc")); });
}

// Prescriptions that name the prescriber are not looked at.
void clsDoc::Delete() {
    if (!mdlMain::CheckConnection()) return;
    Frame frame("clsDoc:Delete");
    frame([&] {
        records::mainConnection().Execute(QStringLiteral("DELETE FROM PHYSIC WHERE MDID = ?"),
                                          {MDID});
    });
}

void clsDoc::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("clsDoc:Connection"));
}

}  // namespace tvrx
