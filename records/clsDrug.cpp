#include "records/clsDrug.h"

#include "records/RecordForms.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Frame.h"
#include "session/text/Encodings.h"

namespace tvrx {

namespace {

using C = clsDrug;
using R = ReadForm;
using W = WriteForm;

// The price dates are written cut to their first six characters.
WriteForm firstSix() {
    return W::custom([](const QVariant& value) { return QVariant(value.toString().left(6)); });
}

// The whole-number package size: the exact one rounded, a half to the even neighbour.
WriteForm wholeNumber() {
    return W::custom([](const QVariant& value) {
        return QVariant(conv::LongFromDouble(conv::RoundHalfEven(value.toDouble())));
    });
}

// Expiration dates before this year are not believed and are stored as the zero date.
constexpr int kFirstBelievableYear = 1900;

// The drug's own dosing times: a row that names a patient holds that patient's times.
const QString kOwnTimes = QStringLiteral("COALESCE(PatientID, 0) = 0 AND DrugID = ?");

}  // namespace

// The columns in the order GetData selects them, the first 41 read by position. The
// package size is kept twice, exactly in dPkgSize and rounded in PackageSize; GetData
// reads it by its own rule.
const ColumnTable<clsDrug>& drugColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("DRUG"), QStringLiteral("DrugID"),
        {
            {"DrugID", member(&C::DrugID), R::nullScreen(0).at(0), W::none()},
            {"Name", member(&C::Name), R::trimmed().at(1), W::quotedDoubled()},
            {"Dosage", member(&C::Dosage), R::trimmed().at(2), W::quotedDoubled()},
            {"PackageSize", member(&C::PackageSize), R::none(), wholeNumber()},
            {"NDC", member(&C::NDC), R::trimmed().at(4), W::quotedRaw()},
            {"Schedule", member(&C::Schedule), R::trimmed().at(5), W::quotedRaw()},
            {"AWP", member(&C::AWP), R::nullScreen(0).at(6), W::number()},
            {"AWPUpdate", member(&C::AWPUpdate), R::nullScreen(0).at(7), W::number()},
            {"Cost", member(&C::Cost), R::nullScreen(0).at(8), W::number()},
            {"CostUpdate", member(&C::CostUpdate), R::nullScreen(0).at(9), W::number()},
            {"MAC", member(&C::MAC), R::nullScreen(0).at(10), W::number()},
            {"MACUpdate", member(&C::MACUpdate), R::nullScreen(0).at(11), W::number()},
            {"Generic", member(&C::Generic), R::nullScreen(0).at(12), W::number()},
            {"PriceTableID", member(&C::PriceTableID), R::nullScreen(0).at(13), W::number()},
            {"Expiration", member(&C::Expiration), R::nullScreen(0).at(14), records::day()},
            {"Lot", member(&C::Lot), R::trimmed().at(15), W::quotedDoubled()},
            {"GCN", member(&C::GCN), R::trimmed().at(16), W::quotedRaw()},
            {"Compound", member(&C::Compound), R::nullScreen(0).at(17), W::number()},
            {"Stock", member(&C::Stock), R::nullScreen(0).at(18), W::number()},
            {"MinReorderQty", member(&C::MinReorderQty), R::nullScreen(0).at(19), W::number()},
            {"ParQty", member(&C::ParQty), R::nullScreen(0).at(20), W::number()},
            {"PEC", member(&C::PEC), R::nullScreen(0).at(21), W::number()},
            {"Note", member(&C::Note), R::trimmed().at(22), W::quotedDoubled()},
            {"MonoNum", member(&C::MonoNum), R::nullScreen(0).at(23), W::number()},
            {"GenericName", member(&C::GenericName), R::trimmed().at(24), W::quotedDoubled()},
            {"BrandName", member(&C::BrandName), R::trimmed().at(25), W::quotedDoubled()},
            {"RouteCode", member(&C::RouteCode), R::trimmed().at(26), W::quotedDoubled()},
            {"Strength", member(&C::Strength), R::trimmed().at(27), W::quotedDoubled()},
            {"DrugClass", member(&C::DrugClass), R::trimmed().at(28), W::quotedDoubled()},
            {"CategoryCode", member(&C::CategoryCode), R::trimmed().at(29), W::quotedDoubled()},
            {"DESI", member(&C::DESI), R::nullScreen(0).at(30), W::number()},
            {"UD", member(&C::UD), R::nullScreen(0).at(31), W::number()},
            {"ObsoleteDate", member(&C::ObsoleteDate), R::trimmed().at(32), W::quotedRaw()},
            {"Units", member(&C::Units), R::trimmed().at(33), W::quotedRaw()},
            {"Therapy", member(&C::Therapy), R::trimmed().at(34), W::quotedDoubled()},
            {"AWPDate", member(&C::AWPDate), R::trimmed().at(35), firstSix()},
            {"CostDate", member(&C::CostDate), R::trimmed().at(36), firstSix()},
            {"MACDate", member(&C::MACDate), R::trimmed().at(37), firstSix()},
            {"ImportID", member(&C::ImportID), R::nullScreen(0).at(38), W::number()},
            {"DecSize", member(&C::DecSize), R::nullScreen(0).at(39), W::number()},
            {"HCPC", member(&C::HCPC), R::trimmed().at(40), W::quotedRaw()},
            {"TXR", member(&C::TXR), R::trimmed(), W::quotedRaw()},
            {"ItemNumber", member(&C::ItemNumber), R::trimmed(), W::quotedRaw()},
            {"dPkgSize", member(&C::PackageSize), R::none(), W::number()},
            {"DefaultSig", member(&C::DefaultSig), R::trimmed(), W::quotedDoubled()},
            {"EnableAutoFill", member(&C::EnableAutoFill), R::nullScreen(0), W::number()},
            {"DefaultQty", member(&C::DefaultQty), R::zeroText(), W::number()},
            {"DefaultRefills", member(&C::DefaultRefills), R::zeroText(), W::number()},
            {"DefaultDS", member(&C::DefaultDS), R::zeroText(), W::number()},
            {"MFR", member(&C::Manufacturer), R::trimmed(), W::quotedDoubled()},
            {"DateChanged", records::presentTime<C>(), R::none(), W::value()},
        });
    return table;
}

namespace {

const ColumnOrder& selectOrder() {
    static const ColumnOrder order = drugColumns().order({"DrugID",       "Name",
                                                          "Dosage",       "PackageSize",
                                                          "NDC",          "Schedule",
                                                          "AWP",          "AWPUpdate",
                                                          "Cost",         "CostUpdate",
                                                          "MAC",          "MACUpdate",
                                                          "Generic",      "PriceTableID",
                                                          "Expiration",   "Lot",
                                                          "GCN",          "Compound",
                                                          "Stock",        "MinReorderQty",
                                                          "ParQty",       "PEC",
                                                          "Note",         "MonoNum",
                                                          "GenericName",  "BrandName",
                                                          "RouteCode",    "Strength",
                                                          "DrugClass",    "CategoryCode",
                                                          "DESI",         "UD",
                                                          "ObsoleteDate", "Units",
                                                          "Therapy",      "AWPDate",
                                                          "CostDate",     "MACDate",
                                                          "ImportID",     "DecSize",
                                                          "HCPC",         "TXR",
                                                          "ItemNumber",   "dPkgSize",
                                                          "DefaultSig",   "EnableAutoFill",
                                                          "DefaultQty",   "DefaultRefills",
                                                          "DefaultDS",    "MFR"});
    return order;
}

const ColumnOrder& updateOrder() {
    static const ColumnOrder order = drugColumns().order({"Name",
                                                          "Dosage",
                                                          "dPkgSize",
                                                          "PackageSize",
                                                          "NDC",
                                                          "Schedule",
                                                          "AWP",
                                                          "AWPUpdate",
                                                          "Cost",
                                                          "CostUpdate",
                                                          "MAC",
                                                          "MACUpdate",
                                                          "Generic",
                                                          "PriceTableID",
                                                          "Expiration",
                                                          "Lot",
                                                          "GCN",
                                                          "Compound",
                                                          "Stock",
                                                          "MinReorderQty",
                                                          "ParQty",
                                                          "PEC",
                                                          "Note",
                                                          "MonoNum",
                                                          "GenericName",
                                                          "BrandName",
                                                          "RouteCode",
                                                          "Strength",
                                                          "DrugClass",
                                                          "CategoryCode",
                                                          "DESI",
                                                          "UD",
                                                          "ObsoleteDate",
                                                          "Units",
                                                          "Therapy",
                                                          "AWPDate",
                                                          "CostDate",
                                                          "MACDate",
                                                          "ImportID",
                                                          "DecSize",
                                                          "HCPC",
                                                          "TXR",
                                                          "MFR",
                                                          "EnableAutoFill",
                                                          "DefaultSig",
                                                          "DefaultQty",
                                                          "DefaultRefills",
                                                          "DefaultDS",
                                                          "DateChanged",
                                                          "ItemNumber"});
    return order;
}

// The exact size when it is above 0, otherwise the whole-number one at position 3.
double packageSizeOf(const RecordSet& rs) {
    const double exact = conv::ToDouble(
        QVariant(QStringLiteral("0") + columns::textOf(rs.Fields(QStringLiteral("dPkgSize")))));
    if (exact > 0) return exact;
    return conv::ToDouble(mdlMain::ScreenForNull(rs.Fields(3), QVariant(0)));
}

}  // namespace

void clsDrug::GetData() {
    const ColumnTable<C>& table = drugColumns();
    const int packageSize = table.order({"PackageSize"}).front();
    Frame frame("clsDrug:GetData");
    RecordSet rs;
    frame([&] {
        rs = records::mainConnection().OpenRecordSet(table.selectList(selectOrder()), {DrugID});
    });
    // A test that fails resumes inside its block, as the original handler did.
    bool none = true;
    frame([&] { none = rs.RecordCount() == 0; });
    if (none) {
        frame([&] { DrugID = 0; });
    } else {
        for (int i : selectOrder()) {
            if (i == packageSize) {
                frame([&] { PackageSize = packageSizeOf(rs); });
            } else {
                table.readColumn(frame, rs, *this, i);
            }
        }
    }
    if (DrugID > 0) {
        frame([&] {
            if (rs.State() == 1) rs.Close();
        });
        frame([&] {
            rs = records::mainConnection().OpenRecordSet(
                QStringLiteral("SELECT Times FROM DrugTimes WHERE ") + kOwnTimes, {DrugID});
        });
        frame([&] {
            DrugTimes = rs.Eof() ? QString() : columns::textOf(rs.Fields(QStringLiteral("Times")));
        });
    }
    frame([&] {
        if (rs.State() == 1) rs.Close();
    });
}

void clsDrug::Update() {
    Frame frame("clsDrug:Update");
    frame([&] {
        if (!Expiration.isValid() || Expiration.date().year() < kFirstBelievableYear)
            Expiration = conv::ZeroDate();
    });
    frame([&] {
        const BoundStatement update = drugColumns().update(*this, DrugID, updateOrder());
        records::mainConnection().Execute(update.sql, update.params);
    });
    RecordSet times;
    frame([&] {
        times = records::mainConnection().OpenUpdatable(QStringLiteral("DrugTimes"),
                                                        QStringLiteral("*"), kOwnTimes, {DrugID});
    });
    frame([&] { saveTimes(times); });
    frame([&] {
        if (times.State() == 1) times.Close();
    });
}

// Adds the drug's times, changes them, or removes them once they are emptied. Times of
// blanks alone leave a row as it is.
void clsDrug::saveTimes(RecordSet& times) const {
    const bool hasRow = !times.Eof();
    const bool hasTimes = !conv::Trim(DrugTimes).isEmpty();
    if (hasTimes) {
        if (!hasRow) {
            times.AddNew();
            times.setField(QStringLiteral("DrugID"), DrugID);
        }
        times.setField(QStringLiteral("DateChanged"), mdlMain::clock().now());
        times.setField(QStringLiteral("Times"), DrugTimes);
        times.Update();
    } else if (hasRow && DrugTimes.isEmpty()) {
        times.Delete();
    }
}

void clsDrug::Insert() {
    if (!mdlMain::CheckConnection()) return;
    Frame frame("clsDrug:Insert");
    frame(
        [&] { DrugID = Procedures::newKey(records::mainConnection(), QStringLiteral("NewDrug")); });
}

void clsDrug::Delete() {
    Frame frame("clsDrug:Delete");
    frame([&] {
        records::mainConnection().Execute(QStringLiteral("DELETE FROM DRUG WHERE DrugID = ?"),
                                          {DrugID});
    });
}

void clsDrug::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("clsDrug:Connection"));
}

}  // namespace tvrx
