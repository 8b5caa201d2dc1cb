#include "records/PATINS.h"

#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

namespace tvrx {

using R = ReadForm;
using W = WriteForm;

// The descriptions live here, where the private members of PATINS can be named.
struct PatinsColumns {
    using P = PATINS;

    static const ColumnTable<P>& row() {
        static const ColumnTable<P> table(
            QStringLiteral("PATINS"), QStringLiteral("PatInsID"),
            {
                {"InsID", accessor(&P::InsID, &P::setInsID), R::nullScreen(0), W::number()},
                {"OPatInsID", member(&P::OPatInsID), R::nullScreen(0), W::number()},
                {"PatientID", member(&P::PatientID), R::nullScreen(0), W::number()},
                {"InsCode", member(&P::InsCode), R::none(), W::quotedRaw()},
                {"GroupNumber", member(&P::GroupNumber), R::text(), W::quotedRaw()},
                {"InsuranceGroup", member(&P::InsuranceGroup), R::text(), W::quotedRaw()},
                {"Relationship", member(&P::Relationship), R::text(), W::quotedRaw()},
                {"cardnumber", member(&P::CardNumber), R::text(), W::quotedRaw()},
                {"subscribersname", member(&P::SubscribersName), R::text(), W::quotedDoubled()},
                {"ExpDate", member(&P::ExpDate), R::ifDate(),
                 W::date(QStringLiteral("MM/DD/YYYY"))},
                {"PersonNumber", member(&P::PersonNumber), R::nullScreen(QStringLiteral("01")),
                 W::quotedRaw()},
                {"Location", member(&P::Location), R::text(), W::quotedRaw()},
                {"OtherCoverage", member(&P::OtherCoverage), R::text(), W::quotedRaw()},
                {"OtherType", member(&P::OtherPayerCoverageType), R::text(), W::quotedRaw()},
                {"PaidQualifier", member(&P::OtherPayerAmountPaidQualifier), R::text(),
                 W::quotedRaw()},
                {"Clarification", member(&P::Clarification), R::text(), W::quotedRaw()},
            });
        return table;
    }

    // What a patient's coverage reads of the plan, each value trimmed.
    static const ColumnTable<P>& plan() {
        static const ColumnTable<P> table(
            QStringLiteral("INSURANCE"), QStringLiteral("InsID"),
            {
                {"ClaimFields", member(&P::ClaimFields), R::trimmed(), W::none()},
                {"InsCode", member(&P::InsCode), R::trimmed(), W::none()},
                {"Name", member(&P::name_), R::trimmed(), W::none()},
                {"Form", member(&P::version_), R::trimmed(), W::none()},
            });
        return table;
    }

    // What a coverage without a row holds, the plan apart (setInsID(0) reads it) and the
    // expiration date, which keeps its value.
    static void clearForMissingRow(P& coverage) {
        coverage.OPatInsID = 0;
        coverage.PatientID = 0;
        for (QString* text :
             {&coverage.GroupNumber, &coverage.InsuranceGroup, &coverage.Relationship,
              &coverage.CardNumber, &coverage.SubscribersName, &coverage.OtherPayerCoverageType,
              &coverage.OtherPayerAmountPaidQualifier, &coverage.Location, &coverage.OtherCoverage,
              &coverage.Clarification}) {
            text->clear();
        }
        coverage.PersonNumber = QStringLiteral("01");
    }
};

const ColumnTable<PATINS>& patinsColumns() {
    return PatinsColumns::row();
}

PATINS::PATINS() : ExpDate(conv::ZeroDate()) {}

std::shared_ptr<DbConnection> PATINS::Connection() const {
    return mdlMain::MainConnection;
}

// The label is the drug record's: the patient coverage record has always reported its
// connection failures under it.
void PATINS::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("clsDrug:Connection"));
}

void PATINS::setInsID(qint32 value) {
    const ColumnTable<PATINS>& plan = PatinsColumns::plan();
    Frame frame("PATINS:InsID");
    insID_ = value;
    if (!plan.load(frame, plan.selectList(plan.all()), value, *this, plan.all(),
                   FailedRowTest::MissesTheRow)) {
        InsCode = QStringLiteral("MISSING");
        name_ = QStringLiteral("NEED TO RECHOOSE INSURANCE");
        version_ = QStringLiteral("NA");
        ClaimFields.clear();
    }
    Medicare = ClaimFields.contains(QStringLiteral("MED"));
}

void PATINS::Insert() {
    Frame frame("PATINS:Insert");
    frame([&] {
        PatInsID = Procedures::newKey(records::mainConnection(), QStringLiteral("NewPatIns"));
    });
    insID_ = 0;
    Clarification = QStringLiteral("0");
    OtherPayerCoverageType = QStringLiteral("1");
    OtherPayerAmountPaidQualifier = QStringLiteral("7");
}

bool PATINS::GetData() {
    const ColumnTable<PATINS>& table = PatinsColumns::row();
    Frame frame("PATINS:GetData");
    RecordSet rs;
    if (table.load(frame, rs, table.selectAll(), PatInsID, *this, table.all(),
                   FailedRowTest::MissesTheRow))
        return true;
    setInsID(0);
    PatinsColumns::clearForMissingRow(*this);
    // The date is read here as in a found row; the empty result makes it fail, which is
    // reported, and the date keeps its value.
    table.read(frame, rs, *this, table.order({"ExpDate"}));
    return false;
}

void PATINS::Update() {
    Frame frame("PATINS:Update");
    PatinsColumns::row().store(frame, *this, PatInsID);
}

void PATINS::Delete() {
    Frame frame("PATINS:Delete");
    frame([&] {
        records::mainConnection().Execute(QStringLiteral("DELETE FROM PATINS WHERE PatInsID = ?"),
                                          {PatInsID});
    });
}

}  // namespace tvrx
