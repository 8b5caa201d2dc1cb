#include "session/data/Catalogue.h"
#include "session/data/Procedures.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"
#include "support/DatabaseFixture.h"

#include <QSet>

#include <algorithm>
#include <thread>

namespace tvrx {
namespace {

class CatalogueTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        for (const auto& t : Procedures::newKeyProcedures()) {
            const bool coverage = qstrcmp(t.table, "PATINS") == 0;
            createTable(QStringLiteral("CREATE TABLE %1 (%2 @KEY@, Name @TEXT@%3)")
                            .arg(QLatin1String(t.table), QLatin1String(t.keyColumn),
                                 coverage ? ", InsID @INT@" : QString()));
        }
        catalogue().RxDB().setConnectionString(connectionString());
        catalogue().RxDB().Open();
    }
    static Catalogue& catalogue() { return mdlMain::catalogue(); }
};

TEST_P(CatalogueTest, NewKeyProceduresInsertAnEmptyRow) {
    for (const auto& t : Procedures::newKeyProcedures()) {
        const qint32 first = Procedures::newKey(*db, QLatin1String(t.name));
        EXPECT_EQ(Procedures::newKey(*db, QStringLiteral("dbo.") + QLatin1String(t.name)),
                  first + 1);
        EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE Name IS NULL")
                                 .arg(QLatin1String(t.table)))
                      .toInt(),
                  2);
    }
}

// Rows a host brought with keys of their own, through this connection and another: each
// new-key procedure still hands out only keys of rows it made itself.
TEST_P(CatalogueTest, NewKeysPassRowsInsertedWithTheirOwnKeys) {
    const auto other = connect();
    for (const auto& t : Procedures::newKeyProcedures()) {
        SCOPED_TRACE(t.name);
        const QString table = QLatin1String(t.table);
        const QString insert = QStringLiteral("INSERT INTO %1 (%2, Name) VALUES (?, 'brought')")
                                   .arg(table, QLatin1String(t.keyColumn));
        for (const int key : {1, 2, 3}) db->Execute(insert, {key});
        other->Execute(insert, {6});
        QList<qint32> keys;
        for (int i = 0; i < 5; ++i)
            keys.append(Procedures::newKey(i % 2 == 0 ? *db : *other, QLatin1String(t.name)));
        std::sort(keys.begin(), keys.end());
        QList<qint32> made;
        const QString madeRows = QStringLiteral("SELECT %1 FROM %2 WHERE Name IS NULL ORDER BY %1")
                                     .arg(QLatin1String(t.keyColumn), table);
        for (RecordSet rs = db->OpenRecordSet(madeRows); !rs.Eof(); rs.MoveNext())
            made.append(rs.Fields(0).toInt());
        EXPECT_EQ(keys, made);
    }
}

// Two workstations ask at once, just after rows with their own keys came in.
TEST_P(CatalogueTest, TwoConnectionsAskingAtOnceGetDifferentKeys) {
    for (int key = 1; key <= 10; ++key)
        db->Execute(QStringLiteral("INSERT INTO PATIENT (PatientID) VALUES (?)"), {key});
    constexpr int kEach = 25;
    QList<qint32> keys[2];
    auto ask = [&](QList<qint32>* out) {
        DbConnection connection(connectionString());
        connection.Open();
        for (int i = 0; i < kEach; ++i) {
            qint32 key = 0;  // a failure, caught so that it cannot end the program, gives 0
            caught([&] { key = Procedures::newKey(connection, "NewPatient"); });
            out->append(key);
        }
    };
    std::thread first(ask, &keys[0]);
    std::thread second(ask, &keys[1]);
    first.join();
    second.join();
    QSet<qint32> distinct(keys[0].begin(), keys[0].end());
    distinct.unite(QSet<qint32>(keys[1].begin(), keys[1].end()));
    EXPECT_EQ(distinct.size(), 2 * kEach);
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATIENT")).toInt(), 10 + 2 * kEach);
}

TEST_P(CatalogueTest, RunLeavesRowsInTheCommandsRecordSet) {
    db->Execute("INSERT INTO PATIENT (Name) VALUES ('Ada'), ('Bea')");
    catalogue().Run("PatientByID", {2});
    RecordSet& rs = catalogue().rs("PatientByID");
    EXPECT_EQ(rs.Fields("Name").toString(), "Bea");
    EXPECT_EQ(caught([&] { catalogue().Run("PatientByID", {1}); }).number, err::ObjectOpen);
    rs.Close();
    catalogue().Run("patientbyid", {1});
    EXPECT_EQ(catalogue().rs("PatientByID").Fields("Name").toString(), "Ada");

    db->Execute("INSERT INTO PATINS (InsID) VALUES (7)");
    catalogue().Run("dbo_PatientIns", {1});
    EXPECT_EQ(catalogue().returnValue("dbo_PatientIns").toInt(), 7);
    EXPECT_EQ(catalogue().rs("dbo_PatientIns").State(), 0);
    catalogue().Run("dbo_PatientIns", {99});
    EXPECT_LT(catalogue().returnValue("dbo_PatientIns").toInt(), 1);
}

TEST_P(CatalogueTest, ProceduresAreRegisteredByLaterCode) {
    const auto unknown = caught([&] { Procedures::call(*db, "dbo.FindMonographs", {1}); });
    EXPECT_EQ(unknown.number, err::StatementError);
    EXPECT_EQ(unknown.description, "Could not find stored procedure 'dbo.FindMonographs'.");
    EXPECT_EQ(caught([&] { catalogue().Run("NoSuchCommand"); }).number, err::ItemNotFound);

    // The registry is the process's: a name of its own per back end.
    const QString name =
        QStringLiteral("ListDrugs") + QString::fromStdString(test::backendName({GetParam(), 0}));
    EXPECT_FALSE(Procedures::isRegistered(name));
    Procedures::registerProcedure(name, [](DbConnection& connection, const QVariantList& args) {
        return Procedures::Result{args.value(0), connection.OpenRecordSet("SELECT Name FROM DRUG")};
    });
    db->Execute("INSERT INTO DRUG (Name) VALUES ('Aspirin')");
    const Procedures::Result result =
        Procedures::call(*db, QStringLiteral("dbo.") + name.toUpper(), {42});
    EXPECT_EQ(result.ReturnValue.toInt(), 42);
    EXPECT_EQ(result.rows.Fields(0).toString(), "Aspirin");
}

TEST(CatalogueCommands, EveryCommandIsListedOnceWithItsKind) {
    QSet<QString> names;
    for (const auto& command : Catalogue::commands())
        names.insert(QString::fromLatin1(command.name).toLower());
    EXPECT_EQ(names.size(), static_cast<int>(Catalogue::commands().size()));
    EXPECT_EQ(Catalogue::command("cmdDrugs")->kind, Catalogue::Kind::Table);
}

TEST(CatalogueCommands, EveryProcedureCommandHasABody) {
    for (const auto& command : Catalogue::commands()) {
        if (command.kind != Catalogue::Kind::Procedure) continue;
        EXPECT_TRUE(Procedures::isRegistered(QLatin1String(command.source))) << command.name;
    }
}

TVRX_BACKENDS(CatalogueTest);

}  // namespace
}  // namespace tvrx
