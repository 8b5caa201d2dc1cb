#include "records/Facility.h"
#include "records/PropertyCases.h"
#include "session/ErrorNumbers.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/SchemaFixture.h"

namespace tvrx {
namespace {

using Case = test::PropertyCase<Facility>;
#define P(property, written, stored, read) TVRX_PROPERTY(Facility, property, written, stored, read)

class FacilityTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        Facility connecting;
        connecting.setConnection(db);
        id = static_cast<qint16>(Procedures::newKey(*db, QStringLiteral("NewFacility")));
    }
    Facility loaded() const {
        Facility facility;
        facility.FacilityID = id;
        facility.GetData();
        return facility;
    }
    qint16 id = 0;
};

TEST_P(FacilityTest, EveryPropertyIsStoredAndReadBackAsTyped) {
    const std::vector<Case> cases{
        P(Name, "St. Mary's Home ", "St. Mary's Home ", "St. Mary's Home "),
        P(AddressL1, " 1 Oak Ln", " 1 Oak Ln", " 1 Oak Ln"),
        P(AddressL2, "Bldg 'A'", "Bldg 'A'", "Bldg 'A'"),
        P(City, "Moore", "Moore", "Moore"),
        P(State, "O'K", "O'K", "O'K"),
        P(Zip, "73160", "73160", "73160"),
        P(Phone, "5555550111", "5555550111", "5555550111"),
        P(Fax, "5555550112", "5555550112", "5555550112"),
        P(Contact, "Ann O'Hara", "Ann O'Hara", "Ann O'Hara"),
        P(ContactPhone, "5555550113'", "5555550113'", "5555550113'"),
        P(Notes, "night shift", "night shift", "night shift"),
        P(UserName, "stmary", "stmary", "stmary"),
        P(Password, "pa'ss", "pa'ss", "pa'ss"),
        Case{"DateChanged", {}, clock->now(), {}, {}},
    };
    test::expectWriteThenRead<Facility>(
        *db, "Facility", "FacilityID", id, cases,
        [&](Facility& facility) {
            facility.FacilityID = id;
            facility.Update();
        },
        [&] { return loaded(); });
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TEST_P(FacilityTest, NullColumnsReadEmptyAndAMissingRowChangesNothing) {
    Facility facility;
    facility.FacilityID = id;
    facility.Name = "Old";
    facility.GetData();
    EXPECT_EQ(facility.Name, "");
    facility.FacilityID = static_cast<qint16>(id + 100);
    facility.Password = "Kept";
    facility.GetData();
    EXPECT_EQ(facility.Password, "Kept");
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// The key is a 16-bit integer: a key above 32,767 is a reported overflow, and the text
// properties are emptied all the same.
TEST_P(FacilityTest, InsertEmptiesTheTextsAndOverflowsAbove32767) {
    Facility facility;
    facility.Name = "Old";
    facility.Insert();
    EXPECT_EQ(facility.FacilityID, id + 1);
    EXPECT_EQ(facility.Name, "");

    if (backend() == Backend::PostgreSQL)
        db->Execute("ALTER TABLE Facility ALTER COLUMN FacilityID RESTART WITH 32768");
    else
        db->Execute("INSERT INTO Facility (FacilityID) VALUES (32767)");
    facility.Password = "Old";
    facility.Insert();
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, "Facility:Insert");
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::Overflow));
    EXPECT_EQ(facility.FacilityID, id + 1);
    EXPECT_EQ(facility.Password, "");
}

TEST_P(FacilityTest, InsertAndDeleteCheckTheConnectionFirst) {
    Facility facility;
    facility.FacilityID = id;
    facility.Delete();
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Facility").toInt(), 0);

    mdlMain::MainConnection.reset();
    user->answerMsgBox(Answer::OK);
    user->answerMsgBox(Answer::OK);
    facility.Name = "Kept";
    facility.Insert();
    facility.Delete();
    EXPECT_EQ(facility.FacilityID, id);
    EXPECT_EQ(facility.Name, "Kept");
    EXPECT_EQ(user->calls().size(), 2);
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TVRX_BACKENDS(FacilityTest);

}  // namespace
}  // namespace tvrx
