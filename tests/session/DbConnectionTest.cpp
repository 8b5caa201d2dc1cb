#include "session/BoundText.h"
#include "session/ErrorNumbers.h"
#include "support/DatabaseFixture.h"

#include <QTimeZone>

#include <functional>

namespace tvrx {
namespace {

class DbConnectionTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        createTable(
            QStringLiteral("CREATE TABLE Patient (PatientID @KEY@, LastName @TEXT@, "
                           "Birthdate @DATETIME@, Deleted @BIT@ DEFAULT 0, Flag @INT@)"));
    }

    QVariant readBack(const QString& column, const QVariant& value) {
        const QVariant id = db->Scalar(
            QStringLiteral("INSERT INTO Patient (%1) VALUES (?) RETURNING PatientID").arg(column),
            {value});
        return db->Scalar(QStringLiteral("SELECT %1 FROM Patient WHERE PatientID = ?").arg(column),
                          {id});
    }
};

TEST_P(DbConnectionTest, TextIsStoredAsTypedWithoutCharacterZero) {
    const struct {
        QString typed;
        QString stored;
    } cases[] = {
        {QStringLiteral("O'Brien"), QStringLiteral("O'Brien")},
        {QStringLiteral("''"), QStringLiteral("''")},
        {QStringLiteral("ABC  "), QStringLiteral("ABC  ")},
        {QString::fromUtf16(u"73072\0\0\0\0\0", 10), QStringLiteral("73072")},
        {QString::fromUtf16(u"A\0B", 3), QStringLiteral("AB")},
        {QStringLiteral("'; DROP TABLE Patient; --"), QStringLiteral("'; DROP TABLE Patient; --")},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(readBack(QStringLiteral("LastName"), c.typed).toString(), c.stored)
            << c.stored.toStdString();
    }
}

TEST_P(DbConnectionTest, DoubledThenCutStoresWhatTheQuotedStatementStored) {
    const struct {
        QString typed;
        int width;
        QString stored;
    } cases[] = {
        {"O'Brien", 20, "O'Brien"}, {"O'Brien", 4, "O'B"}, {"O'Brien", 3, "O'"},
        {"O'Brien", 2, "O'"},       {"''", 3, "''"},       {"It's Al's", 5, "It's"},
        {"Plain", 3, "Pla"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(readBack(QStringLiteral("LastName"), doubledThenCut(c.typed, c.width)).toString(),
                  c.stored)
            << c.typed.toStdString() << " cut to " << c.width;
    }
}

TEST_P(DbConnectionTest, DateTimesKeepTheirWallClockTime) {
    ASSERT_NE(QTimeZone::systemTimeZone().offsetFromUtc(QDateTime::currentDateTime()), 0)
        << "run the tests with a time zone other than UTC (TZ=America/Chicago)";
    const QDateTime cases[] = {
        QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)),
        QDateTime(QDate(2025, 7, 4), QTime(23, 59, 59)),
        QDateTime(QDate(2025, 12, 31), QTime(0, 0, 0)),
        QDateTime(QDate(1899, 12, 30), QTime(0, 0, 0)),
        QDateTime(QDate(2025, 11, 2), QTime(1, 30, 0)),
    };
    for (const QDateTime& at : cases) {
        const QVariant id = db->Scalar(
            QStringLiteral("INSERT INTO Patient (Birthdate) VALUES (?) RETURNING PatientID"), {at});
        const RecordSet rs =
            db->OpenRecordSet(QStringLiteral("SELECT Birthdate, CAST(Birthdate AS TEXT) || '|' AS "
                                             "Stored, MAX(Birthdate) AS Latest "
                                             "FROM Patient WHERE PatientID = ? GROUP BY Birthdate"),
                              {id});
        EXPECT_EQ(rs.Fields(0).toDateTime(), at) << at.toString().toStdString();
        EXPECT_EQ(rs.Fields(1).toString(), at.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss|")));
        EXPECT_EQ(rs.Fields(QStringLiteral("latest")).toDateTime(), at);
    }
    // Bound with milliseconds, stored to the second.
    const QDateTime withMs(QDate(2026, 1, 2), QTime(3, 4, 5, 678));
    EXPECT_EQ(readBack(QStringLiteral("Birthdate"), withMs).toDateTime(),
              QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
}

TEST_P(DbConnectionTest, ServerTimeIsTheMachinesLocalTime) {
    const QDateTime server =
        db->Scalar(QStringLiteral("SELECT ") + db->dialect().serverTime()).toDateTime();
    EXPECT_LE(qAbs(server.secsTo(QDateTime::currentDateTime())), 5)
        << server.toString().toStdString();
}

TEST_P(DbConnectionTest, FlagsAndBooleans) {
    EXPECT_EQ(readBack(QStringLiteral("Flag"), -1).toInt(), -1);
    EXPECT_EQ(readBack(QStringLiteral("Flag"), true).toInt(), 1);
    EXPECT_EQ(readBack(QStringLiteral("Flag"), false).toInt(), 0);
    EXPECT_FALSE(readBack(QStringLiteral("Flag"), QVariant()).isValid());
    const QVariant id = db->Scalar(
        QStringLiteral("INSERT INTO Patient (LastName) VALUES (?) RETURNING PatientID"), {"X"});
    EXPECT_EQ(
        db->Scalar(QStringLiteral("SELECT Deleted FROM Patient WHERE PatientID = ?"), {id}).toInt(),
        0);
}

TEST_P(DbConnectionTest, IdentifiersAndComparedTextIgnoreLetterCase) {
    db->Execute(QStringLiteral("insert into PATIENT (lastname) values (?)"),
                {QStringLiteral("Smith  ")});
    const struct {
        QString wanted;
        bool found;
    } cases[] = {
        {"SMITH", true}, {"smith   ", true}, {"Smith", true}, {" Smith", false}, {"Smit", false}};
    for (const auto& c : cases) {
        const QVariant count = db->Scalar(QStringLiteral("SELECT COUNT(*) FROM patient WHERE ") +
                                              db->dialect().textEquals("LASTNAME"),
                                          {c.wanted});
        EXPECT_EQ(count.toInt(), c.found ? 1 : 0) << c.wanted.toStdString();
    }
    const RecordSet rs = db->OpenRecordSet(QStringLiteral("Select LastName From PaTiEnT"));
    EXPECT_EQ(rs.Fields(QStringLiteral("LASTNAME")).toString(), "Smith  ");
}

TEST_P(DbConnectionTest, ErrorsMapOntoThePlatformsNumbers) {
    db->Execute(QStringLiteral("INSERT INTO Patient (PatientID) VALUES (1)"));
    const struct {
        QString sql;
        long number;
        QString inText;
    } cases[] = {
        {"SELEC 1", err::StatementError,
         db->backend() == Backend::PostgreSQL ? "SQLSTATE 42601" : "syntax error"},
        {"SELECT Nothing FROM Patient", err::StatementError, "Nothing"},
        {"INSERT INTO Patient (PatientID) VALUES (1)", err::ConstraintViolated,
         db->backend() == Backend::PostgreSQL ? "SQLSTATE 23505" : "UNIQUE"},
    };
    for (const auto& c : cases) {
        const auto failure = caught([&] { db->Execute(c.sql); });
        EXPECT_EQ(failure.number, c.number) << c.sql.toStdString();
        EXPECT_TRUE(failure.description.contains(c.inText, Qt::CaseInsensitive))
            << failure.description.toStdString();
    }
    EXPECT_EQ(db->State(), 1);
}

TEST_P(DbConnectionTest, StatementTimeOut) {
    auto other = connect();
    other->setCommandTimeout(1);
    other->Close();
    other->Open();
    if (backend() == Backend::PostgreSQL) {
        EXPECT_EQ(caught([&] { other->Execute(QStringLiteral("SELECT pg_sleep(3)")); }).number,
                  err::TimedOut);
    } else {
        // A write lock held elsewhere is not granted within the time-out.
        db->Execute(QStringLiteral("BEGIN IMMEDIATE"));
        EXPECT_EQ(caught([&] {
                      other->Execute(QStringLiteral("INSERT INTO Patient (Flag) VALUES (1)"));
                  }).number,
                  err::TimedOut);
        db->Execute(QStringLiteral("COMMIT"));
    }
    EXPECT_EQ(other->State(), 1);
}

TEST_P(DbConnectionTest, LostLinkClosesTheConnection) {
    loseLink(*db);
    EXPECT_EQ(caught([&] { db->Scalar(QStringLiteral("SELECT COUNT(*) FROM Patient")); }).number,
              err::LostLink);
    EXPECT_EQ(db->State(), 0);
    // Until it is reopened every statement fails the same way.
    EXPECT_EQ(caught([&] { db->Execute(QStringLiteral("DELETE FROM Patient")); }).number,
              err::LostLink);
    db->Open();
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM Patient")).toInt(), 0);
}

TEST_P(DbConnectionTest, TestHookFailsTheNextStatementOnly) {
    for (long number : {err::TimedOut, err::StatementError, err::ConstraintViolated}) {
        db->failNextStatement(number);
        EXPECT_EQ(caught([&] { db->Execute(QStringLiteral("DELETE FROM Patient")); }).number,
                  number);
        EXPECT_EQ(db->State(), 1);
        EXPECT_EQ(caught([&] { db->Execute(QStringLiteral("DELETE FROM Patient")); }).number, 0);
    }
}

TEST_P(DbConnectionTest, OpenAndCloseStates) {
    EXPECT_EQ(caught([&] { db->Open(); }).number, err::ObjectOpen);
    EXPECT_EQ(caught([&] { db->setConnectionString(QStringLiteral("x.db")); }).number,
              err::ObjectOpen);
    db->Close();
    EXPECT_EQ(db->State(), 0);
    EXPECT_EQ(caught([&] { db->Execute(QStringLiteral("SELECT 1")); }).number,
              err::ConnectionUnusable);
    DbConnection nowhere(backend() == Backend::PostgreSQL
                             ? QStringLiteral("postgresql://nobody@127.0.0.1:1/none")
                             : QStringLiteral("/no/such/folder/pharmacy.db"));
    EXPECT_EQ(caught([&] { nowhere.Open(); }).number, err::LostLink);
    EXPECT_EQ(nowhere.State(), 0);
}

TEST_P(DbConnectionTest, TwoConnectionsToOneDatabase) {
    auto other = connect();
    db->Execute(QStringLiteral("INSERT INTO Patient (LastName) VALUES (?)"),
                {QStringLiteral("Ng")});
    EXPECT_EQ(other->Scalar(QStringLiteral("SELECT LastName FROM Patient")).toString(), "Ng");
    EXPECT_NE(other->name(), db->name());
}

// The counter counts what reaches the database, whichever primitive or record set sends
// it: a statement the database refuses counts, one the hook refuses before sending does not.
TEST_P(DbConnectionTest, CountsTheStatementsItSends) {
    const struct {
        const char* what;
        std::function<void()> step;
        qint64 sent;
    } cases[] = {
        {"Execute", [&] { db->Execute(QStringLiteral("DELETE FROM Patient")); }, 1},
        {"Scalar", [&] { db->Scalar(QStringLiteral("SELECT COUNT(*) FROM Patient")); }, 1},
        {"OpenRecordSet", [&] { db->OpenRecordSet(QStringLiteral("SELECT * FROM Patient")); }, 1},
        {"AddNew and Update on an updatable set",
         [&] {
             RecordSet rs = db->OpenUpdatable(QStringLiteral("Patient"));
             rs.AddNew();
             rs.setField(QStringLiteral("LastName"), QStringLiteral("Ng"));
             rs.Update();
             rs.setField(QStringLiteral("Flag"), 2);
             rs.Update();
             rs.Delete();
         },
         4},
        {"a statement the database refuses",
         [&] { caught([&] { db->Execute(QStringLiteral("DELETE FROM NoSuchTable")); }); }, 1},
        {"the test hook",
         [&] {
             db->failNextStatement(err::TimedOut);
             caught([&] { db->Execute(QStringLiteral("DELETE FROM Patient")); });
         },
         0},
    };
    for (const auto& c : cases) {
        const qint64 before = db->statementsRun();
        c.step();
        EXPECT_EQ(db->statementsRun() - before, c.sent) << c.what;
    }
}

// Statements with values are prepared once and run again: a schema change in between, a
// second connection writing between two runs and a run the database refuses must all
// leave the next run correct.
TEST_P(DbConnectionTest, StatementsRunAgainAfterChangesAroundThem) {
    const QString insert = QStringLiteral("INSERT INTO Patient (LastName, Flag) VALUES (?, ?)");
    const QString select = QStringLiteral("SELECT * FROM Patient WHERE Flag = ?");
    db->Execute(insert, {QStringLiteral("Ng"), 1});
    EXPECT_EQ(db->OpenRecordSet(select, {1}).FieldCount(), 5);

    db->Execute(db->dialect().ddl(QStringLiteral("ALTER TABLE Patient ADD COLUMN Room @TEXT@")));
    EXPECT_EQ(db->OpenRecordSet(select, {1}).FieldCount(), 6);

    auto other = connect();
    other->Execute(insert, {QStringLiteral("Okafor"), 1});
    EXPECT_EQ(db->OpenRecordSet(select, {1}).RecordCount(), 2);
    EXPECT_EQ(other->Execute(QStringLiteral("UPDATE Patient SET Flag = ? WHERE Flag = ?"), {2, 1}),
              2);

    EXPECT_EQ(caught([&] {
                  db->Execute(insert, {QStringLiteral("Ng"), QStringLiteral("x")});
              }).number == 0,
              backend() == Backend::SQLite);
    db->Execute(insert, {QStringLiteral("Lindqvist"), 1});
    EXPECT_EQ(db->OpenRecordSet(select, {1}).Fields(QStringLiteral("LastName")).toString(),
              "Lindqvist");
}

TVRX_BACKENDS(DbConnectionTest);

}  // namespace
}  // namespace tvrx
