#include "records/Facility.h"
#include "records/PropertyCases.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"

namespace tvrx {
namespace {

class FacilityTest : public test::RecordFixture<Facility, &Facility::FacilityID> {
protected:
    FacilityTest() : RecordFixture("NewFacility") {}
};

// Every text is stored and read back as typed.
TEST_P(FacilityTest, EveryPropertyIsStoredAndReadBackAsTyped) {
    Facility facility;
    test::expectEveryColumnWrittenAndRead(*db, facilityColumns(), &Facility::FacilityID, id, {},
                                          {{"DateChanged", {}, clock->now(), clock->now()}},
                                          facility);
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
    EXPECT_EQ(takeReports(), QStringList{test::reportOf("Facility:Insert", err::Overflow)});
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
}

TVRX_BACKENDS(FacilityTest);

}  // namespace
}  // namespace tvrx
