#include "session/ErrorNumbers.h"
#include "session/TableRegistry.h"
#include "support/DatabaseFixture.h"

namespace tvrx {
namespace {

class RecordSetTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        TableRegistry::registerTable(
            {QStringLiteral("Plan"), QStringLiteral("PlanID"), {QStringLiteral("OnLine")}});
        createTable(
            QStringLiteral("CREATE TABLE Plan (PlanID @KEY@, Name @TEXT@, BIN @TEXT@, "
                           "Fee @MONEY@, OnLine @BIT@ DEFAULT 0, Changed @DATETIME@)"));
        for (const char* name : {"Acme", "Bolt", "Cove"}) {
            db->Execute(QStringLiteral("INSERT INTO Plan (Name, BIN, Fee) VALUES (?, ?, ?)"),
                        {QString::fromLatin1(name), QStringLiteral("610"), 2.5});
        }
    }

    RecordSet plans() {
        return db->OpenRecordSet(QStringLiteral("SELECT * FROM Plan ORDER BY PlanID"));
    }
    QStringList names() {
        QStringList result;
        RecordSet rs = db->OpenRecordSet(QStringLiteral("SELECT Name FROM Plan ORDER BY PlanID"));
        for (; !rs.Eof(); rs.MoveNext()) result.append(rs.Fields(0).toString());
        return result;
    }
};

TEST_P(RecordSetTest, MovesCountsAndFinds) {
    RecordSet rs = plans();
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_FALSE(rs.Bof());
    rs.MoveLast();
    EXPECT_EQ(rs.Fields(QStringLiteral("name")).toString(), "Cove");
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
    EXPECT_EQ(caught([&] { rs.Fields(QStringLiteral("Name")); }).number, err::NoCurrentRecord);
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
        EXPECT_EQ(rs.Eof() ? QString() : rs.Fields(QStringLiteral("Name")).toString(), f.found)
            << f.criterion.toStdString();
    }
    rs.MoveLast();
    rs.Find(QStringLiteral("Name = 'Acme'"));
    EXPECT_TRUE(rs.Eof()) << "a find starts at the current row";
}

TEST_P(RecordSetTest, FieldsByNameAndPositionKeepNulls) {
    RecordSet rs = plans();
    EXPECT_EQ(rs.FieldCount(), 6);
    EXPECT_EQ(rs.FieldNames().at(1).toLower(), "name");
    EXPECT_EQ(rs.Fields(1), rs.Fields(QStringLiteral("NAME")));
    EXPECT_DOUBLE_EQ(rs.Fields(QStringLiteral("Fee")).toDouble(), 2.5);
    EXPECT_FALSE(rs.Fields(QStringLiteral("Changed")).isValid());
    EXPECT_EQ(caught([&] { rs.Fields(QStringLiteral("Missing")); }).number, err::ItemNotFound);
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
    RecordSet outer =
        db->OpenRecordSet(QStringLiteral("SELECT PlanID, Name FROM Plan ORDER BY PlanID"));
    QStringList seen;
    while (!outer.Eof()) {
        const RecordSet inner = db->OpenRecordSet(
            QStringLiteral("SELECT Name FROM Plan WHERE PlanID = ?"), {outer.Fields(0)});
        db->Execute(QStringLiteral("UPDATE Plan SET Name = ? WHERE PlanID = ?"),
                    {inner.Fields(0).toString() + QStringLiteral("!"), outer.Fields(0)});
        seen.append(outer.Fields(1).toString());
        outer.MoveNext();
    }
    EXPECT_EQ(seen, QStringList({"Acme", "Bolt", "Cove"}));
    EXPECT_EQ(names(), QStringList({"Acme!", "Bolt!", "Cove!"}));
}

TEST_P(RecordSetTest, UpdatableResultWritesByKey) {
    RecordSet rs = db->OpenUpdatable(QStringLiteral("plan"), QStringLiteral("*"),
                                     QStringLiteral("Name = ?"), {QStringLiteral("Bolt")});
    ASSERT_EQ(rs.RecordCount(), 1);
    rs.setField(QStringLiteral("name"), QStringLiteral("O'Hara"));
    rs.setField(QStringLiteral("Changed"), QDateTime(QDate(2026, 3, 14), QTime(9, 0)));
    rs.Update();
    rs.AddNew();
    rs.setField(QStringLiteral("Name"), QStringLiteral("Dune"));
    rs.Update();
    EXPECT_EQ(rs.Fields(QStringLiteral("PlanID")).toInt(), 4);
    rs.AddNew();
    rs.setField(QStringLiteral("Name"), QStringLiteral("Echo"));
    rs.MoveFirst();  // moving off a new row writes it
    rs.setField(QStringLiteral("Name"), QStringLiteral("Nobody"));
    rs.CancelUpdate();
    EXPECT_EQ(rs.Fields(QStringLiteral("Name")).toString(), "O'Hara");
    rs.Delete();
    EXPECT_EQ(caught([&] { rs.Fields(QStringLiteral("Name")); }).number, err::NoCurrentRecord);
    EXPECT_EQ(rs.RecordCount(), 2);
    rs.Close();
    EXPECT_EQ(names(), QStringList({"Acme", "Cove", "Dune", "Echo"}));
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM Plan WHERE Changed = ?"),
                         {QDateTime(QDate(2026, 3, 14), QTime(9, 0))})
                  .toInt(),
              0);

    RecordSet readOnly = plans();
    EXPECT_EQ(caught([&] { readOnly.setField(QStringLiteral("Name"), 1); }).number,
              err::NotUpdatable);
}

TEST_P(RecordSetTest, UpdatableResultFetchesAMissingKeyAlongside) {
    RecordSet rs =
        db->OpenUpdatable(QStringLiteral("Plan"), QStringLiteral("Name, OnLine"),
                          QStringLiteral("BIN = ? ORDER BY Name DESC"), {QStringLiteral("610")});
    EXPECT_EQ(rs.FieldCount(), 2);
    EXPECT_EQ(caught([&] { rs.Fields(QStringLiteral("PlanID")); }).number, err::ItemNotFound);
    const struct {
        QVariant assigned;
        int stored;
        int asBoolean;
    } flags[] = {{true, 1, -1}, {-1, 1, -1}, {5, 1, -1}, {0, 0, 0}};
    for (const auto& f : flags) {
        rs.MoveFirst();
        rs.setField(QStringLiteral("OnLine"), f.assigned);
        rs.setField(QStringLiteral("Name"), QStringLiteral("Zed"));
        rs.Update();
        EXPECT_EQ(rs.asBoolean(QStringLiteral("OnLine")).toInt(), f.asBoolean);
        EXPECT_EQ(db->Scalar(QStringLiteral("SELECT OnLine FROM Plan WHERE PlanID = 3")).toInt(),
                  f.stored);
    }
    EXPECT_EQ(names(), QStringList({"Acme", "Bolt", "Zed"}));
}

TEST_P(RecordSetTest, UnregisteredTableFindsItsKeyInTheDatabaseCatalogue) {
    createTable(QStringLiteral("CREATE TABLE Shelf (ShelfID @KEY@, Label @TEXT@)"));
    db->Execute(QStringLiteral("INSERT INTO Shelf (Label) VALUES (?)"), {QStringLiteral("A1")});
    RecordSet rs = db->OpenUpdatable(QStringLiteral("SHELF"), QStringLiteral("Label"));
    rs.setField(QStringLiteral("Label"), QStringLiteral("B2"));
    rs.Update();
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT Label FROM Shelf")).toString(), "B2");
}

TVRX_BACKENDS(RecordSetTest);

}  // namespace
}  // namespace tvrx
