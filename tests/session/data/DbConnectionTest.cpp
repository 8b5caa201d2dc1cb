#include "session/data/BoundText.h"
#include "session/runtime/ErrorNumbers.h"
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

// What a column gives back for a bound value: text as typed but for character 0 (an empty
// text, null or not, as an empty text), a doubled and cut text as the quoted statement
// stored it, flags as numbers, times to the second; an invalid value is NULL.
TEST_P(DbConnectionTest, ColumnsGiveBackWhatWasBound) {
    const struct {
        const char* column;
        QVariant bound;
        QVariant read;
    } cases[] = {
        {"LastName", "O'Brien", "O'Brien"},
        {"LastName", "''", "''"},
        {"LastName", "ABC  ", "ABC  "},
        {"LastName", QString(), ""},
        {"LastName", QString(""), ""},
        {"LastName", QString::fromUtf16(u"\0", 1), ""},
        {"LastName", QVariant(), QVariant()},
        {"LastName", QString::fromUtf16(u"73072\0\0\0\0\0", 10), "73072"},
        {"LastName", QString::fromUtf16(u"A\0B", 3), "AB"},
        {"LastName", "'; DROP TABLE Patient; --", "'; DROP TABLE Patient; --"},
        {"LastName", doubledThenCut("O'Brien", 20), "O'Brien"},
        {"LastName", doubledThenCut("O'Brien", 4), "O'B"},
        {"LastName", doubledThenCut("O'Brien", 3), "O'"},
        {"LastName", doubledThenCut("O'Brien", 2), "O'"},
        {"LastName", doubledThenCut("''", 3), "''"},
        {"LastName", doubledThenCut("It's Al's", 5), "It's"},
        {"LastName", doubledThenCut("Plain", 3), "Pla"},
        {"Flag", -1, -1},
        {"Flag", true, 1},
        {"Flag", false, 0},
        {"Flag", QVariant(), QVariant()},
        {"Birthdate", QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5, 678)),
         QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5))},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(readBack(QString::fromLatin1(c.column), c.bound), c.read)
            << c.column << " bound " << c.bound.toString().toStdString();
    }
    db->Execute("INSERT INTO Patient (LastName) VALUES ('Unflagged')");
    EXPECT_EQ(db->Scalar("SELECT Deleted FROM Patient WHERE LastName = 'Unflagged'"), 0);
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
        const QVariant id =
            db->Scalar("INSERT INTO Patient (Birthdate) VALUES (?) RETURNING PatientID", {at});
        const RecordSet rs =
            db->OpenRecordSet(QStringLiteral("SELECT Birthdate, CAST(Birthdate AS TEXT) || '|' AS "
                                             "Stored, MAX(Birthdate) AS Latest "
                                             "FROM Patient WHERE PatientID = ? GROUP BY Birthdate"),
                              {id});
        EXPECT_EQ(rs.Fields(0).toDateTime(), at) << at.toString().toStdString();
        EXPECT_EQ(rs.Fields(1).toString(), at.toString("yyyy-MM-dd HH:mm:ss|"));
        EXPECT_EQ(rs.Fields("latest").toDateTime(), at);
    }
}

TEST_P(DbConnectionTest, ServerTimeIsTheMachinesLocalTime) {
    const QDateTime server =
        db->Scalar(QStringLiteral("SELECT ") + db->dialect().serverTime()).toDateTime();
    EXPECT_LE(qAbs(server.secsTo(QDateTime::currentDateTime())), 5)
        << server.toString().toStdString();
}

TEST_P(DbConnectionTest, IdentifiersAndComparedTextIgnoreLetterCase) {
    db->Execute("insert into PATIENT (lastname) values (?)", {"Smith  "});
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
    const RecordSet rs = db->OpenRecordSet("Select LastName From PaTiEnT");
    EXPECT_EQ(rs.Fields("LASTNAME").toString(), "Smith  ");
}

// One connection through a run of steps: the failure number each raises, a text its
// description holds, and the state the connection is left in.
TEST_P(DbConnectionTest, FailuresMapOntoThePlatformsNumbersAndLeaveTheirState) {
    const bool postgres = backend() == Backend::PostgreSQL;
    db->Execute("INSERT INTO Patient (PatientID) VALUES (1)");
    const struct {
        const char* what;
        std::function<void()> step;
        long number;
        QString inText;
        int state;
    } steps[] = {
        {"open again", [&] { db->Open(); }, err::ObjectOpen, "", 1},
        {"new string while open", [&] { db->setConnectionString("x.db"); }, err::ObjectOpen, "", 1},
        {"syntax", [&] { db->Execute("SELEC 1"); }, err::StatementError,
         postgres ? "SQLSTATE 42601" : "syntax error", 1},
        {"no such column", [&] { db->Execute("SELECT Nothing FROM Patient"); }, err::StatementError,
         "Nothing", 1},
        {"key taken", [&] { db->Execute("INSERT INTO Patient (PatientID) VALUES (1)"); },
         err::ConstraintViolated, postgres ? "SQLSTATE 23505" : "UNIQUE", 1},
        {"test hook",
         [&] {
             db->failNextStatement(err::TimedOut);
             db->Execute("DELETE FROM Patient WHERE PatientID = 2");
         },
         err::TimedOut, "", 1},
        {"after the hook", [&] { db->Execute("DELETE FROM Patient WHERE PatientID = 2"); }, 0, "",
         1},
        {"lost link",
         [&] {
             loseLink(*db);
             db->Scalar("SELECT COUNT(*) FROM Patient");
         },
         err::LostLink, "", 0},
        {"until reopened", [&] { db->Execute("DELETE FROM Patient"); }, err::LostLink, "", 0},
        {"reopened", [&] { db->Open(); }, 0, "", 1},
        {"rows kept", [&] { EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Patient"), 1); }, 0, "", 1},
        {"closed", [&] { db->Close(); }, 0, "", 0},
        {"used closed", [&] { db->Execute("SELECT 1"); }, err::ConnectionUnusable, "", 0},
    };
    for (const auto& s : steps) {
        const auto failure = caught(s.step);
        EXPECT_EQ(failure.number, s.number) << s.what;
        EXPECT_TRUE(failure.description.contains(s.inText, Qt::CaseInsensitive))
            << s.what << ": " << failure.description.toStdString();
        EXPECT_EQ(db->State(), s.state) << s.what;
    }
    DbConnection nowhere(postgres ? "postgresql://nobody@127.0.0.1:1/none"
                                  : "/no/such/folder/pharmacy.db");
    EXPECT_EQ(caught([&] { nowhere.Open(); }).number, err::LostLink);
    EXPECT_EQ(nowhere.State(), 0);
}

TEST_P(DbConnectionTest, StatementTimeOut) {
    auto other = connect();
    other->setCommandTimeout(1);
    other->Close();
    other->Open();
    if (backend() == Backend::PostgreSQL) {
        EXPECT_EQ(caught([&] { other->Execute("SELECT pg_sleep(3)"); }).number, err::TimedOut);
    } else {
        // A write lock held elsewhere is not granted within the time-out.
        db->Execute("BEGIN IMMEDIATE");
        EXPECT_EQ(caught([&] { other->Execute("INSERT INTO Patient (Flag) VALUES (1)"); }).number,
                  err::TimedOut);
        db->Execute("COMMIT");
    }
    EXPECT_EQ(other->State(), 1);
}

// The counter counts what reaches the database, whichever primitive or record set sends
// it: a statement the database refuses counts, one the hook refuses before sending does not.
TEST_P(DbConnectionTest, CountsTheStatementsItSends) {
    const struct {
        const char* what;
        std::function<void()> step;
        qint64 sent;
    } cases[] = {
        {"Execute", [&] { db->Execute("DELETE FROM Patient"); }, 1},
        {"Scalar", [&] { db->Scalar("SELECT COUNT(*) FROM Patient"); }, 1},
        {"OpenRecordSet", [&] { db->OpenRecordSet("SELECT * FROM Patient"); }, 1},
        {"AddNew and Update on an updatable set",
         [&] {
             RecordSet rs = db->OpenUpdatable("Patient");
             rs.AddNew();
             rs.setField("LastName", "Ng");
             rs.Update();
             rs.setField("Flag", 2);
             rs.Update();
             rs.Delete();
         },
         4},
        {"a statement the database refuses",
         [&] { caught([&] { db->Execute("DELETE FROM NoSuchTable"); }); }, 1},
        {"the test hook",
         [&] {
             db->failNextStatement(err::TimedOut);
             caught([&] { db->Execute("DELETE FROM Patient"); });
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
    const QString insert = "INSERT INTO Patient (LastName, Flag) VALUES (?, ?)";
    const QString select = "SELECT * FROM Patient WHERE Flag = ?";
    db->Execute(insert, {"Ng", 1});
    EXPECT_EQ(db->OpenRecordSet(select, {1}).FieldCount(), 5);

    db->Execute(db->dialect().ddl("ALTER TABLE Patient ADD COLUMN Room @TEXT@"));
    EXPECT_EQ(db->OpenRecordSet(select, {1}).FieldCount(), 6);

    auto other = connect();
    other->Execute(insert, {"Okafor", 1});
    EXPECT_EQ(db->OpenRecordSet(select, {1}).RecordCount(), 2);
    EXPECT_EQ(other->Execute("UPDATE Patient SET Flag = ? WHERE Flag = ?", {2, 1}), 2);

    EXPECT_EQ(caught([&] {
                  db->Execute(insert, {"Ng", "x"});
              }).number == 0,
              backend() == Backend::SQLite);
    db->Execute(insert, {"Lindqvist", 1});
    EXPECT_EQ(db->OpenRecordSet(select, {1}).Fields("LastName").toString(), "Lindqvist");
}

TVRX_BACKENDS(DbConnectionTest);

}  // namespace
}  // namespace tvrx
