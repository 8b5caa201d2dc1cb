#include "records/PropertyCases.h"
#include "records/clsDoc.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"

namespace tvrx {
namespace {

using test::at;

const QString kNoConnection = QStringLiteral(
    "It appears your Data Server connection has failed. Close out of Tessivar (or Lite)\r\nand "
    "restart the application. If this problem persists contact technical support.");

class clsDocTest : public test::RecordFixture<clsDoc, &clsDoc::MDID> {
protected:
    clsDocTest() : RecordFixture("NewDoc") {}
};

// Nothing is trimmed; the zip code and telephones come back in their display forms and
// are written back as the object holds them; dates lose their time but are never reset.
TEST_P(clsDocTest, EveryPropertyIsStoredAndReadBackInItsOwnForm) {
    const double third = QStringLiteral("0.333333333333333").toDouble();
    const std::vector<test::ColumnCase> cases{
        {"Zip", "73072", {}, test::nulPadded("73072")},
        {"Telephone", "5555550100", {}, "(555) 555-0100"},
        {"Telephone2", "15555550101", {}, "(555) 555-0101"},
        {"FaxNumber", "(555) 555-01__", {}, ""},
        {"PriceAmount", 1.0 / 3, third, third},
        {"LastRxDate", at(1600, 1, 1, 8)},
        {"DateChanged", {}, clock->now(), clock->now()},
    };
    clsDoc written;
    test::expectEveryColumnWrittenAndRead(*db, docColumns(), &clsDoc::MDID, id, {}, cases, written);
}

// A null date reads as the zero date and is written like any other.
TEST_P(clsDocTest, ANullDateReadsAsZeroAndIsWrittenLikeAnyOther) {
    clsDoc doc = loaded();
    EXPECT_EQ(doc.DateLastSeen, conv::ZeroDate());
    EXPECT_EQ(doc.Zip, "");
    doc.Update();
    EXPECT_EQ(db->OpenRecordSet("SELECT DateLastSeen FROM PHYSIC").Fields(0).toDateTime(),
              conv::ZeroDate());
}

// Every operation first checks the main connection: it reopens a closed one, and without
// one it shows the warning and does nothing. Insert takes a new key and Delete removes the
// row.
TEST_P(clsDocTest, EveryOperationChecksTheConnectionFirst) {
    db->Execute("UPDATE PHYSIC SET LastName = 'Stored' WHERE MDID = ?", {id});
    db->Close();
    EXPECT_EQ(loaded().LastName, "Stored");
    EXPECT_EQ(db->State(), 1);
    clsDoc inserted;
    inserted.LastName = "Kept";
    inserted.Insert();
    EXPECT_GT(inserted.MDID, id);
    EXPECT_EQ(inserted.LastName, "Kept");
    inserted.Delete();
    EXPECT_EQ(db->Scalar("SELECT MDID FROM PHYSIC").toInt(), id);

    const std::vector<std::function<void(clsDoc&)>> operations{
        [](clsDoc& d) { d.GetData(); }, [](clsDoc& d) { d.Update(); },
        [](clsDoc& d) { d.Insert(); }, [](clsDoc& d) { d.Delete(); }};
    mdlMain::MainConnection.reset();
    for (const auto& operation : operations) {
        user->answerMsgBox(Answer::OK);
        clsDoc doc;
        doc.MDID = id;
        operation(doc);
        EXPECT_EQ(doc.MDID, id);
        EXPECT_EQ(doc.LastName, "");
    }
    ASSERT_EQ(user->calls().size(), 4);
    EXPECT_EQ(user->calls().at(3).text(), kNoConnection);
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM PHYSIC").toInt(), 1);
}

TVRX_BACKENDS(clsDocTest);

}  // namespace
}  // namespace tvrx
