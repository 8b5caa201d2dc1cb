#include "records/PropertyCases.h"
#include "records/clsDoc.h"
#include "session/ErrorNumbers.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/SchemaFixture.h"

namespace tvrx {
namespace {

using test::at;
using Case = test::PropertyCase<clsDoc>;
#define P(property, written, stored, read) TVRX_PROPERTY(clsDoc, property, written, stored, read)

const QString kNoConnection = QStringLiteral(
    "It appears your Data Server connection has failed. Close out of Tessivar (or Lite)\r\nand "
    "restart the application. If this problem persists contact technical support.");

class clsDocTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsDoc connecting;
        connecting.setConnection(db);
        id = Procedures::newKey(*db, QStringLiteral("NewDoc"));
    }
    clsDoc loaded() const {
        clsDoc doc;
        doc.MDID = id;
        doc.GetData();
        return doc;
    }
    qint32 id = 0;
};

// Nothing is trimmed; the zip code and telephones come back in their display forms and
// are written back as the object holds them; dates lose their time but are never reset.
TEST_P(clsDocTest, EveryPropertyIsStoredAndReadBackInItsOwnForm) {
    const double third = QStringLiteral("0.333333333333333").toDouble();
    const std::vector<Case> cases{
        P(LastName, " O'Neil ", " O'Neil ", " O'Neil "),
        P(FirstName, "Pat", "Pat", "Pat"),
        P(MI, "J'", "J'", "J'"),
        P(Title, "MD ", "MD ", "MD "),
        P(AddressLine1, "1 Clinic Rd", "1 Clinic Rd", "1 Clinic Rd"),
        P(AddressLine2, "Suite 'B'", "Suite 'B'", "Suite 'B'"),
        P(City, "Norman", "Norman", "Norman"),
        P(State, "O'K", "O'K", "O'K"),
        P(Zip, "73072", "73072", test::nulPadded("73072")),
        P(Telephone, "5555550100", "5555550100", "(555) 555-0100"),
        P(Telephone2, "15555550101", "15555550101", "(555) 555-0101"),
        P(FaxNumber, "(555) 555-01__", "(555) 555-01__", ""),
        P(DateLastSeen, at(2025, 12, 1, 16, 0), at(2025, 12, 1), at(2025, 12, 1)),
        P(Practice, "Family", "Family", "Family"),
        P(Comments, "won't fax", "won't fax", "won't fax"),
        P(DoctorCode, "D7", "D7", "D7"),
        P(DEA, "AB1234563", "AB1234563", "AB1234563"),
        P(StateLic, "OK-123", "OK-123", "OK-123"),
        P(Provider1, "1234567893", "1234567893", "1234567893"),
        P(Provider2, "P2", "P2", "P2"),
        P(NumberOfScripts, 12, 12, 12),
        P(PriceAmount, 1.0 / 3, third, third),
        P(CostAmount, 99.99, 99.99, 99.99),
        P(LastRxDate, at(1600, 1, 1, 8), at(1600, 1, 1), at(1600, 1, 1)),
        P(EMail, "dr@example.com", "dr@example.com", "dr@example.com"),
        P(ImportID, 3, 3, 3),
        Case{"DateChanged", {}, clock->now(), {}, {}},
    };
    test::expectWriteThenRead<clsDoc>(
        *db, "PHYSIC", "MDID", id, cases,
        [&](clsDoc& doc) {
            doc.MDID = id;
            doc.Update();
        },
        [&] { return loaded(); });
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TEST_P(clsDocTest, ANullDateReadsAsZeroAndIsWrittenLikeAnyOther) {
    clsDoc doc = loaded();
    EXPECT_EQ(doc.DateLastSeen, conv::ZeroDate());
    EXPECT_EQ(doc.Zip, "");
    doc.Update();
    EXPECT_EQ(db->OpenRecordSet("SELECT DateLastSeen FROM PHYSIC").Fields(0).toDateTime(),
              conv::ZeroDate());
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// A key beyond 32 bits in ImportID is one overflow; the other columns still read.
TEST_P(clsDocTest, ABadColumnIsOneReportAndTheRestStillReads) {
    if (backend() == Backend::PostgreSQL)
        db->Execute("ALTER TABLE PHYSIC ALTER COLUMN ImportID TYPE bigint");
    db->Execute("UPDATE PHYSIC SET ImportID = 3000000000, EMail = 'a@b.example' WHERE MDID = ?",
                {id});
    clsDoc doc;
    doc.MDID = id;
    doc.ImportID = 7;
    doc.GetData();
    ASSERT_EQ(reporter->reports().size(), 1) << test::reportsText(*reporter);
    EXPECT_EQ(reporter->reports().at(0).location, "clsDoc:GetData");
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::Overflow));
    EXPECT_EQ(doc.ImportID, 7);
    EXPECT_EQ(doc.EMail, "a@b.example");
}

TEST_P(clsDocTest, AnUnknownOrZeroKeyLeavesTheObjectAsItWas) {
    for (const qint32 key : {0, id + 100}) {
        clsDoc doc;
        doc.MDID = key;
        doc.LastName = "Kept";
        doc.GetData();
        EXPECT_EQ(doc.MDID, key);
        EXPECT_EQ(doc.LastName, "Kept");
    }
}

// Every operation first checks the main connection: it reopens a closed one, and without
// one it shows the warning and does nothing.
TEST_P(clsDocTest, EveryOperationChecksTheConnectionFirst) {
    db->Execute("UPDATE PHYSIC SET LastName = 'Stored' WHERE MDID = ?", {id});
    db->Close();
    EXPECT_EQ(loaded().LastName, "Stored");
    EXPECT_EQ(db->State(), 1);

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
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TEST_P(clsDocTest, InsertTakesANewKeyAndDeleteRemovesTheRow) {
    clsDoc doc;
    doc.LastName = "Kept";
    doc.Insert();
    EXPECT_GT(doc.MDID, id);
    EXPECT_EQ(doc.LastName, "Kept");
    doc.Delete();
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM PHYSIC WHERE MDID = ?", {doc.MDID}).toInt(), 0);
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM PHYSIC").toInt(), 1);
}

TVRX_BACKENDS(clsDocTest);

}  // namespace
}  // namespace tvrx
