#include "session/Failure.h"
#include "session/Schema.h"
#include "support/SchemaFixture.h"

#include <QDateTime>

#include <set>

namespace tvrx {
namespace {

// Every table the library's statements and record classes name, with the columns they
// read or write. Written from what the records say, not from the schema files.
const struct {
    const char* table;
    const char* columns;
} kNamedTables[] = {
    {"RXINFO",
     "RXInfoID Number RefillNumber LogID Date Qty Price RetailPrice Copay QtyRemain DS Patient "
     "PatientID Doctor "
     "MDID PatInsID InsID SIG Compound Drug DrugID Refills Cost PriceTableID AWP PA PANumber DNDC "
     "Voided "
     "OriginalDate DAWField RPhID TechID Schedule Notes SigCodes OtherDenial DURConflict "
     "DURIntervention "
     "DUROutcome AuthNumber Paid Online OnlineResult Diagnosis OtherPayor DenialDate HCPC Form "
     "ControlNumber "
     "Transferred ARCharge QBTxnID MetricQty DURData OtherInsCode EligibilityCode OriginCode "
     "LevelOfService "
     "GeneratedRx Units InsData FormulaID OPatInsID OInsPaid OInsAmount OInsCopay PInsAmount "
     "PInsCopay "
     "OAuthNumber OOnlineResult OtherCoverage OtherType PaidQualifier OtherIDQualifier OtherID "
     "OtherDate Deleted "
     "OnHold OriginalQty OriginalRefills ProductIDQualifier PAMC DateChanged"},
    {"PATIENT",
     "PatientID LastName FirstName MI AddressLine1 AddressLine2 City State ZipCode Country "
     "BillingAddress "
     "BillingCity BillingState BillingZipCode Telephone Fax Gender Birthdate AccountNumber "
     "MedicalRecordNum Unit "
     "Room Allergies Location WeightKg HeightCm Notes ChargeAccount ARCustomerID ForeignSigs "
     "MarriageStatus "
     "StudentStatus WorkPhone EMail PatInsID PatAllID Conditions EasyOpen SSN PriceTableID "
     "AllergiesLarge "
     "Diagnosis EmployerID InjuryType QBListID InjuryDate Spanish HIPPA AutoCharge FacilityID MDID "
     "AdmitDate "
     "CCNumber CCExpMonth CCExpYear CCName CCAddress CCZip CCAddressSame Pregnancy Smoker ImportID "
     "DateChanged "
     "Deleted"},
    {"PATINS",
     "PatInsID OPatInsID InsID PatientID InsCode GroupNumber InsuranceGroup Relationship "
     "cardnumber "
     "subscribersname ExpDate PersonNumber Location OtherCoverage OtherType PaidQualifier "
     "Clarification"},
    {"PATALL", "Code Allergies PatientID"},
    {"INSURANCE",
     "InsID InsCode Name Address City State Zip Phone Fax Notes Contact Fee FeePS Copay CopayPS "
     "GenericFee "
     "GenericCopay GenCopayPS DaysSupply Basis Form ID Invoice UandC PatCopay DoctorID OnLineLimit "
     "OnLinePhone "
     "Device ModemSpeed DB SB Parity BIN ProcNumb BrandPT GenericPT OnLine Internet VendorID "
     "ClaimFields "
     "IDQualifier Deleted"},
    {"PHYSIC",
     "MDID LastName FirstName MI Title AddressLine1 AddressLine2 City State Zip Telephone "
     "Telephone2 FaxNumber "
     "DateLastSeen Practice Comments DoctorCode DEA StateLic Provider1 Provider2 NumberOfScripts "
     "PriceAmount "
     "CostAmount LastRxDate EMail ImportID DateChanged"},
    {"DRUG",
     "DrugID Name Dosage PackageSize NDC Schedule AWP AWPUpdate Cost CostUpdate MAC MACUpdate "
     "Generic "
     "PriceTableID Expiration Lot GCN Compound Stock MinReorderQty ParQty PEC Note MonoNum "
     "GenericName BrandName "
     "RouteCode Strength DrugClass CategoryCode DESI UD ObsoleteDate Units Therapy AWPDate "
     "CostDate MACDate "
     "ImportID DecSize HCPC TXR ItemNumber dPkgSize DefaultSig EnableAutoFill DefaultQty "
     "DefaultRefills DefaultDS "
     "MFR DateChanged"},
    {"DrugTimes", "DrugID PatientID Times DateChanged"},
    {"Facility",
     "FacilityID Name AddressL1 AddressL2 City State Zip Phone Fax Contact ContactPhone Notes "
     "UserName Password "
     "DateChanged"},
    {"Claims", "RxInfoID Response Reversal OtherIns ClaimText HeaderText ClaimDateTime"},
    {"Ingredients", "RxInfoID NAME NDC CostBasis Qty Cost HCPC"},
    {"LOG_RX", "LogDate RxInfoID Changes RPhID TechID"},
    {"WANTBOOK", "DrugID Date OrderQty"},
    {"Store", "Name AddressL1 AddressL2 City State Zip Phone Fax Email WebAddress"},
    {"Options", "OptionsID DefaultCA DefaultINS SalesTax"},
    {"RPH", "RPhID LastName FirstName MI License"},
    {"PriceTable", "PriceTableID UseCost BreakOnQty"},
    {"PriceTableInfo", "PriceTableID BreakPoint MarkUpMultiplier MarkUpAddend"},
    {"PriceTableKey", "PriceTableID AWP BreakOnQty"},
    {"AutoRefill", "LastDate SpecificDay IntervalDays Description PatientName"},
};

// Other spellings the statements use for the same tables.
const char* const kOtherSpellings[] = {"PatIns",      "PatAll", "Insurance", "STORE",  "RPh",
                                       "INGREDIENTS", "Physic", "Patient",   "RxInfo", "Wantbook"};

class SchemaTest : public test::DatabaseFixture {};

class SchemaColumnsTest : public test::SchemaFixture {};

QStringList versionRows(DbConnection& db) {
    QStringList rows;
    RecordSet rs = db.OpenRecordSet(
        QStringLiteral("SELECT Version, Name FROM SchemaVersion ORDER BY Version"));
    for (; !rs.Eof(); rs.MoveNext())
        rows << rs.Fields(0).toString() + QLatin1Char(' ') + rs.Fields(1).toString();
    return rows;
}

TEST_P(SchemaTest, MigrationsApplyOnAnEmptyDatabaseAndASecondRunChangesNothing) {
    const std::vector<Migration> migrations = schemaMigrations(backend());
    ASSERT_FALSE(migrations.empty());

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

TEST_P(SchemaTest, BothBackEndsHaveTheSameVersions) {
    std::set<int> sqlite;
    std::set<int> postgres;
    for (const Migration& m : schemaMigrations(Backend::SQLite)) sqlite.insert(m.version);
    for (const Migration& m : schemaMigrations(Backend::PostgreSQL)) postgres.insert(m.version);
    EXPECT_EQ(sqlite, postgres);
}

TEST_P(SchemaTest, AFailedTransactionLeavesNothingBehind) {
    const auto step = caught([&] {
        runInTransaction(*db, [&] {
            db->Execute(db->dialect().ddl(QStringLiteral("CREATE TABLE Half (HalfID @KEY@)")));
            db->Execute(QStringLiteral("INSERT INTO Half DEFAULT VALUES"));
            db->Execute(QStringLiteral("INSERT INTO NoSuchTable DEFAULT VALUES"));
        });
    });
    EXPECT_NE(step.number, 0);
    EXPECT_NE(caught([&] { db->Scalar(QStringLiteral("SELECT COUNT(*) FROM Half")); }).number, 0)
        << "the table made inside the failed transaction is still there";
}

TEST_P(SchemaColumnsTest, EveryNamedTableHasTheNamedColumns) {
    for (const auto& named : kNamedTables) {
        const QString table = QString::fromLatin1(named.table);
        RecordSet rs;
        ASSERT_NO_THROW(
            rs = db->OpenRecordSet(QStringLiteral("SELECT * FROM %1 WHERE 1 = 0").arg(table)))
            << named.table;
        const QStringList have = rs.FieldNames();
        for (const QString& column : QString::fromLatin1(named.columns).split(QLatin1Char(' '))) {
            EXPECT_TRUE(have.contains(column, Qt::CaseInsensitive))
                << named.table << "." << column.toStdString();
        }
    }
    for (const char* spelling : kOtherSpellings) {
        EXPECT_EQ(caught([&] {
                      db->Scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(spelling));
                  }).number,
                  0)
            << spelling;
    }
    EXPECT_EQ(schemaTables().size(), qsizetype(std::size(kNamedTables)))
        << "a table the records do not name";
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
        {"DRUG", "AWPDate", QStringLiteral("260101"), QStringLiteral("260101")},
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
        const char* table;
        const char* columns;
        const char* changed;
    } cases[] = {
        {"WANTBOOK", "DrugID, Date, OrderQty", "OrderQty"},
        {"DrugTimes", "Times, DrugID", "DrugID"},
        {"AutoRefill", "PatientName, SpecificDay", "SpecificDay"},
    };
    for (const auto& c : cases) {
        const QString table = QString::fromLatin1(c.table);
        const QString changed = QString::fromLatin1(c.changed);
        RecordSet rs = db->OpenUpdatable(table, QString::fromLatin1(c.columns));
        rs.AddNew();
        rs.setField(changed, 3);
        rs.Update();
        rs.AddNew();
        rs.setField(changed, 4);
        rs.Update();
        rs.Close();
        rs = db->OpenUpdatable(table, QString::fromLatin1(c.columns),
                               changed + QStringLiteral(" = 3"));
        rs.setField(changed, 5);
        rs.Update();
        rs.Close();
        const QString values = QStringLiteral("SELECT %1 FROM %2 ORDER BY %1").arg(changed, table);
        RecordSet check = db->OpenRecordSet(values);
        ASSERT_EQ(check.RecordCount(), 2) << c.table;
        EXPECT_EQ(check.Fields(0).toInt(), 4) << c.table;
        check.MoveNext();
        EXPECT_EQ(check.Fields(0).toInt(), 5) << c.table;
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
        {"CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS $$\nBEGIN\n  NEW.X := 1;\n  "
         "RETURN NEW;\nEND\n$$;\n"
         "SELECT 1;",
         {"CREATE FUNCTION f() RETURNS trigger LANGUAGE plpgsql AS $$\nBEGIN\n  NEW.X := 1;\n  "
          "RETURN NEW;\nEND\n$$",
          "SELECT 1"}},
        {"CREATE TRIGGER t AFTER INSERT ON A\nBEGIN\n  UPDATE A SET X = CASE WHEN X <> 0 THEN 1 "
         "ELSE X END;\n  "
         "DELETE FROM B;\nEND;\nSELECT 2;",
         {"CREATE TRIGGER t AFTER INSERT ON A\nBEGIN\n  UPDATE A SET X = CASE WHEN X <> 0 THEN 1 "
          "ELSE X END;\n  "
          "DELETE FROM B;\nEND",
          "SELECT 2"}},
        {"BEGIN;\nCOMMIT;\n-- trailing comment", {"BEGIN", "COMMIT"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(splitStatements(QString::fromUtf8(c.text)), c.statements) << c.text;
}

}  // namespace
}  // namespace tvrx
