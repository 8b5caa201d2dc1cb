#include "records/clsDrug.h"

#include "records/RecordForms.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"
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

// The exact size when it is above 0, otherwise the whole-number one at position 3.
ReadForm packageSize() {
    return R::fromRow([](const RecordSet& rs) {
        const double exact = conv::ToDouble(
            QVariant(QStringLiteral("0") + columns::textOf(rs.Fields(QStringLiteral("dPkgSize")))));
        if (exact > 0) return QVariant(exact);
        return mdlMain::ScreenForNull(rs.Fields(3), QVariant(0));
    });
}

// Expiration dates before this year are not believed and are stored as the zero date.
constexpr int kFirstBelievableYear = 1900;

// The drug's own dosing times: a row that names a patient holds that patient's times.
const QString kOwnTimes = QStringLiteral("COALESCE(PatientID, 0) = 0 AND DrugID = ?");

}  // namespace

// The columns in the order GetData selects them, the first 41 read by position. The
// package size is kept twice, exactly in dPkgSize and rounded in PackageSize; GetData
// reads it by its own rule. dPkgSize and PackageSize are written from the same member:
// where the exact size cannot be written, neither can its rounding, so the failure is
// the same whichever of the two comes first.
const ColumnTable<clsDrug>& drugColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("DRUG"), QStringLiteral("DrugID"),
        {
            {"DrugID", member(&C::DrugID), R::nullScreen(0).at(0), W::none()},
            {"Name", member(&C::Name), R::trimmed().at(1), W::quotedDoubled()},
            {"Dosage", member(&C::Dosage), R::trimmed().at(2), W::quotedDoubled()},
            {"PackageSize", member(&C::PackageSize), packageSize(), wholeNumber()},
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

void clsDrug::GetData() {
    const ColumnTable<C>& table = drugColumns();
    Frame frame("clsDrug:GetData");
    if (!table.load(frame, table.selectList(table.selected()), DrugID, *this, table.selected(),
                    FailedRowTest::MissesTheRow))
        DrugID = 0;
    if (DrugID <= 0) return;
    RecordSet times;
    frame([&] {
        times = records::mainConnection().OpenRecordSet(
            QStringLiteral("SELECT Times FROM DrugTimes WHERE ") + kOwnTimes, {DrugID});
    });
    frame([&] {
        DrugTimes =
            times.Eof() ? QString() : columns::textOf(times.Fields(QStringLiteral("Times")));
    });
}

void clsDrug::Update() {
    Frame frame("clsDrug:Update");
    if (!Expiration.isValid() || Expiration.date().year() < kFirstBelievableYear)
        Expiration = conv::ZeroDate();
    drugColumns().store(frame, *this, DrugID);
    RecordSet times;
    frame([&] {
        times = records::mainConnection().OpenUpdatable(QStringLiteral("DrugTimes"),
                                                        QStringLiteral("*"), kOwnTimes, {DrugID});
    });
    frame([&] { saveTimes(times); });
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
