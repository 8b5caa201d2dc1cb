#include "session/data/TableRegistry.h"
#include "session/runtime/ErrorNumbers.h"
#include "support/DatabaseFixture.h"

namespace tvrx {
namespace {

class RecordSetTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        TableRegistry::registerTable({"Plan", "PlanID", {"OnLine"}});
        createTable(
            QStringLiteral("CREATE TABLE Plan (PlanID @KEY@, Name @TEXT@, BIN @TEXT@, "
                           "Fee @MONEY@, OnLine @BIT@ DEFAULT 0, Changed @DATETIME@)"));
        for (const char* name : {"Acme", "Bolt", "Cove"}) {
            db->Execute("INSERT INTO Plan (Name, BIN, Fee) VALUES (?, ?, ?)",
                        {QString::fromLatin1(name), "610", 2.5});
        }
    }

    RecordSet plans() { return db->OpenRecordSet("SELECT * FROM Plan ORDER BY PlanID"); }
    QStringList names() {
        QStringList result;
        RecordSet rs = db->OpenRecordSet("SELECT Name FROM Plan ORDER BY PlanID");
        for (; !rs.Eof(); rs.MoveNext()) result.append(rs.Fields(0).toString());
        return result;
    }
};

TEST_P(RecordSetTest, MovesCountsAndFinds) {
    RecordSet rs = plans();
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_FALSE(rs.Bof());
    rs.MoveLast();
    EXPECT_EQ(rs.Fields("name").toString(), "Cove");
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
    EXPECT_EQ(caught([&] { rs.Fields("Name"); }).number, err::NoCurrentRecord);
    EXPECT_EQ(caught([&] { rs.MoveNext(); }).number, err::NoCurrentRecord);
    rs.MoveFirst();
    rs.MovePrevious();
    EXPECT_TRUE(rs.Bof());

    const struct {
        QString criterion;
        QString found;  // empty: end of data
    } finds[] = {
        {"Name = 'bolt'", "Bolt"}, {"NAME='Cove'", "Cove"}, {"PlanID = 1", "Acme"},
        {"Name = 'Nobody'", ""},   {"Fee = 2.5", "Acme"},
    };
    for (const auto& f : finds) {
        rs.MoveFirst();
        rs.Find(f.criterion);
        EXPECT_EQ(rs.Eof() ? QString() : rs.Fields("Name").toString(), f.found)
            << f.criterion.toStdString();
    }
    rs.MoveLast();
    rs.Find("Name = 'Acme'");
    EXPECT_TRUE(rs.Eof()) << "a find starts at the current row";
}

TEST_P(RecordSetTest, FieldsByNameAndPositionKeepNulls) {
    RecordSet rs = plans();
    EXPECT_EQ(rs.FieldCount(), 6);
    EXPECT_EQ(rs.FieldNames().at(1).toLower(), "name");
    EXPECT_EQ(rs.Fields(1), rs.Fields("NAME"));
    EXPECT_DOUBLE_EQ(rs.Fields("Fee").toDouble(), 2.5);
    EXPECT_FALSE(rs.Fields("Changed").isValid());
    EXPECT_EQ(caught([&] { rs.Fields("Missing"); }).number, err::ItemNotFound);
    EXPECT_EQ(caught([&] { rs.Fields(9); }).number, err::ItemNotFound);
    rs.Close();
    EXPECT_EQ(rs.State(), 0);
    for (const auto& step : std::initializer_list<std::function<void()>>{
             [&] { rs.Eof(); }, [&] { rs.MoveNext(); }, [&] { rs.Fields(0); }, [&] { rs.Close(); },
             [&] { rs.RecordCount(); }}) {
        EXPECT_EQ(caught(step).number, err::ObjectClosed);
    }
}

TEST_P(RecordSetTest, NestedStatementsLeaveAnOpenResultAlone) {
    RecordSet outer = db->OpenRecordSet("SELECT PlanID, Name FROM Plan ORDER BY PlanID");
    QStringList seen;
    while (!outer.Eof()) {
        const RecordSet inner =
            db->OpenRecordSet("SELECT Name FROM Plan WHERE PlanID = ?", {outer.Fields(0)});
        db->Execute("UPDATE Plan SET Name = ? WHERE PlanID = ?",
                    {inner.Fields(0).toString() + "!", outer.Fields(0)});
        seen.append(outer.Fields(1).toString());
        outer.MoveNext();
    }
    EXPECT_EQ(seen, QStringList({"Acme", "Bolt", "Cove"}));
    EXPECT_EQ(names(), QStringList({"Acme!", "Bolt!", "Cove!"}));
}

TEST_P(RecordSetTest, UpdatableResultWritesByKey) {
    RecordSet rs = db->OpenUpdatable("plan", "*", "Name = ?", {"Bolt"});
    ASSERT_EQ(rs.RecordCount(), 1);
    rs.setField("name", "O'Hara");
    rs.Update();
    rs.AddNew();
    rs.setField("Name", "Dune");
    rs.Update();
    EXPECT_EQ(rs.Fields("PlanID").toInt(), 4);
    rs.AddNew();
    rs.setField("Name", "Echo");
    rs.MoveFirst();  // moving off a new row writes it
    rs.setField("Name", "Nobody");
    rs.CancelUpdate();
    EXPECT_EQ(rs.Fields("Name").toString(), "O'Hara");
    rs.Delete();
    EXPECT_EQ(caught([&] { rs.Fields("Name"); }).number, err::NoCurrentRecord);
    EXPECT_EQ(rs.RecordCount(), 2);
    rs.Close();
    EXPECT_EQ(names(), QStringList({"Acme", "Cove", "Dune", "Echo"}));

    RecordSet readOnly = plans();
    EXPECT_EQ(caught([&] { readOnly.setField("Name", 1); }).number, err::NotUpdatable);
}

TEST_P(RecordSetTest, UpdatableResultFetchesAMissingKeyAlongside) {
    RecordSet rs = db->OpenUpdatable("Plan", "Name, OnLine", "BIN = ? ORDER BY Name DESC", {"610"});
    EXPECT_EQ(rs.FieldCount(), 2);
    EXPECT_EQ(caught([&] { rs.Fields("PlanID"); }).number, err::ItemNotFound);
    const struct {
        QVariant assigned;
        int stored;
        int asBoolean;
    } flags[] = {{true, 1, -1}, {-1, 1, -1}, {5, 1, -1}, {0, 0, 0}};
    for (const auto& f : flags) {
        rs.MoveFirst();
        rs.setField("OnLine", f.assigned);
        rs.setField("Name", "Zed");
        rs.Update();
        EXPECT_EQ(rs.asBoolean("OnLine").toInt(), f.asBoolean);
        EXPECT_EQ(db->Scalar("SELECT OnLine FROM Plan WHERE PlanID = 3").toInt(), f.stored);
    }
    EXPECT_EQ(names(), QStringList({"Acme", "Bolt", "Zed"}));
}

TEST_P(RecordSetTest, UnregisteredTableFindsItsKeyInTheDatabaseCatalogue) {
    createTable("CREATE TABLE Shelf (ShelfID @KEY@, Label @TEXT@)");
    db->Execute("INSERT INTO Shelf (Label) VALUES (?)", {"A1"});
    RecordSet rs = db->OpenUpdatable("SHELF", "Label");
    rs.setField("Label", "B2");
    rs.Update();
    EXPECT_EQ(db->Scalar("SELECT Label FROM Shelf").toString(), "B2");
}

TVRX_BACKENDS(RecordSetTest);

}  // namespace
}  // namespace tvrx
