#include "session/data/Schema.h"
#include "session/runtime/Failure.h"
#include "support/DataRows.h"
#include "support/SchemaFixture.h"

#include <QDateTime>

#include <set>

namespace tvrx {
namespace {

// Other spellings the statements use for the same tables.
const char* const kOtherSpellings[] = {"PatIns",      "PatAll", "Insurance", "STORE",  "RPh",
                                       "INGREDIENTS", "Physic", "Patient",   "RxInfo", "Wantbook"};

class SchemaTest : public test::DatabaseFixture {};

class SchemaColumnsTest : public test::SchemaFixture {};

QStringList versionRows(DbConnection& db) {
    QStringList rows;
    RecordSet rs = db.OpenRecordSet("SELECT Version, Name FROM SchemaVersion ORDER BY Version");
    for (; !rs.Eof(); rs.MoveNext())
        rows << rs.Fields(0).toString() + QLatin1Char(' ') + rs.Fields(1).toString();
    return rows;
}

TEST_P(SchemaTest, MigrationsApplyOnAnEmptyDatabaseAndASecondRunChangesNothing) {
    const std::vector<Migration> migrations = schemaMigrations(backend());
    ASSERT_FALSE(migrations.empty());
    std::set<int> versions[2];
    for (const Backend b : {Backend::SQLite, Backend::PostgreSQL}) {
        for (const Migration& m : schemaMigrations(b)) versions[int(b)].insert(m.version);
    }
    EXPECT_EQ(versions[0], versions[1]) << "both back ends have the same versions";

    const SchemaReport first = applySchema(*db);
    EXPECT_EQ(first.versionBefore, 0);
    EXPECT_EQ(first.versionAfter, migrations.back().version);
    EXPECT_EQ(first.applied.size(), qsizetype(migrations.size()));
    const QStringList recorded = versionRows(*db);

    auto other = connect();
    const SchemaReport second = applySchema(*other);
    EXPECT_TRUE(second.applied.isEmpty());
    EXPECT_EQ(second.versionBefore, first.versionAfter);
    EXPECT_EQ(second.versionAfter, first.versionAfter);
    EXPECT_EQ(versionRows(*db), recorded);
    EXPECT_EQ(schemaVersion(*db), first.versionAfter);
}

TEST_P(SchemaColumnsTest, EveryNamedTableHasTheNamedColumns) {
    const QList<test::DataRow> named = test::dataRows("record-columns.tsv");
    for (const test::DataRow& row : named) {
        ASSERT_EQ(row.cells.size(), 2) << row.where;
        RecordSet rs;
        ASSERT_NO_THROW(rs = db->OpenRecordSet(
                            QStringLiteral("SELECT * FROM %1 WHERE 1 = 0").arg(row.cells[0])))
            << row.where;
        for (const QString& column : row.cells[1].split(u' ')) {
            EXPECT_TRUE(rs.FieldNames().contains(column, Qt::CaseInsensitive))
                << row.where << ": " << column.toStdString();
        }
    }
    for (const char* spelling : kOtherSpellings)
        EXPECT_NO_THROW(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(spelling)))
            << spelling;
    EXPECT_EQ(schemaTables().size(), named.size()) << "a table the records do not name";
}

// What a column gives back for a value written by a statement, first as the row is added,
// then by an update of the row.
TEST_P(SchemaColumnsTest, ColumnsKeepWhatTheRecordsNeed) {
    const QDateTime noon(QDate(2026, 3, 14), QTime(12, 0, 5));
    const QString longText(300, QLatin1Char('x'));
    const struct {
        const char* table;
        const char* column;
        QVariant written;
        QVariant read;
    } cases[] = {
        {"RXINFO", "Deleted", -1, 1},
        {"RXINFO", "Deleted", 7, 1},
        {"RXINFO", "Deleted", 1, 1},
        {"RXINFO", "Deleted", 0, 0},
        {"PATIENT", "Deleted", -1, 1},
        {"INSURANCE", "Deleted", -1, 1},
        {"INSURANCE", "OnLine", -1, 1},
        {"INSURANCE", "Internet", -1, 1},
        {"INSURANCE", "DaysSupply", -1, 1},
        {"INSURANCE", "UandC", 2, 1},
        {"INSURANCE", "PatCopay", -1, 1},
        {"INSURANCE", "Deleted", QVariant(), QVariant()},
        {"RXINFO", "Voided", -1, -1},
        {"RXINFO", "OnHold", -1, -1},
        {"RXINFO", "ARCharge", -1, -1},
        {"RXINFO", "Online", -1, -1},
        {"RXINFO", "Transferred", -1, -1},
        {"Claims", "Response", 1, 1},
        {"INSURANCE", "Fee", 5.25, 5.25},
        {"RXINFO", "Qty", 2.5, 2.5},
        {"RXINFO", "Date", noon, noon},
        {"PATIENT", "Birthdate", noon, noon},
        {"PATINS", "ExpDate", noon, noon},
        {"LOG_RX", "LogDate", noon, noon},
        {"WANTBOOK", "Date", noon, noon},
        {"AutoRefill", "LastDate", noon, noon},
        {"PATIENT", "LastName", longText, longText},
        {"DRUG", "AWPDate", "260101", "260101"},
    };
    for (const auto& c : cases) {
        const QString where =
            QStringLiteral("%1.%2 = %3").arg(c.table, c.column, c.written.toString());
        db->Execute(QStringLiteral("DELETE FROM %1").arg(c.table));
        db->Execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(c.table, c.column),
                    {c.written});
        const QString select = QStringLiteral("SELECT %1 FROM %2").arg(c.column, c.table);
        EXPECT_EQ(db->Scalar(select), c.read) << "inserted " << where.toStdString();
        db->Execute(QStringLiteral("UPDATE %1 SET %2 = NULL").arg(c.table, c.column));
        db->Execute(QStringLiteral("UPDATE %1 SET %2 = ?").arg(c.table, c.column), {c.written});
        EXPECT_EQ(db->Scalar(select), c.read) << "updated " << where.toStdString();
    }
}

// The record sets that change rows of these tables select no key; the data layer finds it.
TEST_P(SchemaColumnsTest, RecordSetsChangeRowsOfTablesTheySelectNoKeyFrom) {
    const struct {
        QString table;
        QString columns;
        QString changed;
    } cases[] = {
        {"WANTBOOK", "DrugID, Date, OrderQty", "OrderQty"},
        {"DrugTimes", "Times, DrugID", "DrugID"},
        {"AutoRefill", "PatientName, SpecificDay", "SpecificDay"},
    };
    for (const auto& c : cases) {
        RecordSet rs = db->OpenUpdatable(c.table, c.columns);
        for (int value : {3, 4}) {
            rs.AddNew();
            rs.setField(c.changed, value);
            rs.Update();
        }
        rs.Close();
        rs = db->OpenUpdatable(c.table, c.columns, c.changed + " = 3");
        rs.setField(c.changed, 5);
        rs.Update();
        rs.Close();
        QList<int> values;
        for (RecordSet check = db->OpenRecordSet(
                 QStringLiteral("SELECT %1 FROM %2 ORDER BY %1").arg(c.changed, c.table));
             !check.Eof(); check.MoveNext()) {
            values << check.Fields(0).toInt();
        }
        EXPECT_EQ(values, QList<int>({4, 5})) << c.table.toStdString();
    }
}

TVRX_BACKENDS(SchemaTest);
TVRX_BACKENDS(SchemaColumnsTest);

TEST(SplitStatements, SplitsOnlyAtTheSemicolonsThatEndStatements) {
    const struct {
        const char* text;
        QStringList statements;
    } cases[] = {
        {"CREATE TABLE A (X @INT@);\nCREATE TABLE B (Y @INT@);",
         {"CREATE TABLE A (X @INT@)", "CREATE TABLE B (Y @INT@)"}},
        {"-- the pharmacy's own; comment\nINSERT INTO A VALUES ('a;b', 'it''s');",
         {"INSERT INTO A VALUES ('a;b', 'it''s')"}},
        {"CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS $$\nBEGIN\n  NEW.X := 1;\n"
         "  RETURN NEW;\nEND\n$$;\nSELECT 1;",
         {"CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS $$\nBEGIN\n  NEW.X := 1;\n"
          "  RETURN NEW;\nEND\n$$",
          "SELECT 1"}},
        {"CREATE TRIGGER t AFTER INSERT ON A\nBEGIN\n  UPDATE A SET X = CASE WHEN X <> 0 THEN 1 "
         "ELSE X END;\n  DELETE FROM B;\nEND;\nSELECT 2;",
         {"CREATE TRIGGER t AFTER INSERT ON A\nBEGIN\n  UPDATE A SET X = CASE WHEN X <> 0 THEN 1 "
          "ELSE X END;\n  DELETE FROM B;\nEND",
          "SELECT 2"}},
        {"BEGIN;\nCOMMIT;\n-- trailing comment", {"BEGIN", "COMMIT"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(splitStatements(QString::fromUtf8(c.text)), c.statements) << c.text;
}

}  // namespace
}  // namespace tvrx
