#include "session/data/EmbeddedFiles.h"
#include "session/data/Procedures.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/TabSeparated.h"
#include "support/SchemaFixture.h"

namespace tvrx {
namespace {

class SamplePharmacyTest : public test::SchemaFixture {
protected:
    qlonglong count(const QString& sql) { return db->Scalar(sql).toLongLong(); }
};

TEST_P(SamplePharmacyTest, LoadsEveryRowOnceAndKeepsItsValues) {
    const SampleLoad load = loadSamplePharmacy(*db);
    ASSERT_TRUE(load.loaded);
    int expected = 0;
    for (const EmbeddedFile& file : samplePharmacyFiles()) {
        const TabSeparated tsv =
            parseTabSeparated(QString::fromUtf8(file.text.data(), qsizetype(file.text.size())));
        ASSERT_TRUE(tsv.error.isEmpty()) << file.name << ": " << tsv.error.toStdString();
        QString table = QString::fromUtf8(file.name.data(), qsizetype(file.name.size()));
        table.chop(4);
        EXPECT_EQ(count(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)),
                  qlonglong(tsv.rows.size()))
            << file.name;
        expected += int(tsv.rows.size());
    }
    EXPECT_EQ(load.rows, expected);

    const SampleLoad again = loadSamplePharmacy(*db);
    EXPECT_FALSE(again.loaded);
    EXPECT_FALSE(again.occupiedTable.isEmpty());
    EXPECT_EQ(count("SELECT COUNT(*) FROM PATIENT"), 12);

    EXPECT_EQ(db->Scalar("SELECT LastName FROM PATIENT WHERE PatientID = 11"),
              QVariant("O'Donnell"));
    EXPECT_EQ(db->Scalar("SELECT Date FROM RXINFO WHERE RXInfoID = 1"),
              QVariant(QDateTime(QDate(2026, 1, 8), QTime(9, 14, 27))));
    EXPECT_EQ(db->Scalar("SELECT BIN FROM INSURANCE WHERE Form = '32'"), QVariant("004410"));
}

// The sample stands for a working pharmacy: what the text promises is there, and every
// number that points at another row finds it.
TEST_P(SamplePharmacyTest, IsASmallConsistentPharmacy) {
    ASSERT_TRUE(loadSamplePharmacy(*db).loaded);
    const struct {
        const char* what;
        const char* sql;
        qlonglong expected;
    } checks[] = {
        {"one store", "SELECT COUNT(*) FROM Store", 1},
        {"options row 1", "SELECT COUNT(*) FROM Options WHERE OptionsID = 1", 1},
        {"a dozen patients, each covered",
         "SELECT COUNT(*) FROM PATIENT p "
         "WHERE EXISTS (SELECT 1 FROM PATINS i WHERE i.PatientID = p.PatientID)",
         12},
        {"a fill on a plan of every claim layout: 3B, 40, 3C, 32, 51 and another",
         "SELECT COUNT(DISTINCT s.Form) FROM RXINFO r JOIN INSURANCE s ON s.InsID = r.InsID", 6},
        {"refills", "SELECT COUNT(*) FROM RXINFO WHERE RefillNumber > 0", 4},
        {"one voided fill", "SELECT COUNT(*) FROM RXINFO WHERE Voided <> 0", 1},
        {"a fill with other coverage, on a coverage of its patient",
         "SELECT COUNT(*) FROM RXINFO r JOIN PATINS o ON o.PatInsID = r.OPatInsID "
         "WHERE r.OtherCoverage = '2' AND o.PatientID = r.PatientID",
         1},
        {"drugs with dosing times",
         "SELECT COUNT(DISTINCT DrugID) FROM DrugTimes WHERE PatientID IS NULL", 4},
        {"price tables without bands",
         "SELECT COUNT(*) FROM PriceTable t WHERE NOT EXISTS "
         "(SELECT 1 FROM PriceTableInfo b WHERE b.PriceTableID = t.PriceTableID)",
         0},
        {"fills whose patient, prescriber, drug, coverage or plan is missing",
         "SELECT COUNT(*) FROM RXINFO r "
         "WHERE NOT EXISTS (SELECT 1 FROM PATIENT p WHERE p.PatientID = r.PatientID) "
         "OR NOT EXISTS (SELECT 1 FROM PHYSIC d WHERE d.MDID = r.MDID) "
         "OR NOT EXISTS (SELECT 1 FROM DRUG g WHERE g.DrugID = r.DrugID) "
         "OR NOT EXISTS (SELECT 1 FROM PATINS i WHERE i.PatInsID = r.PatInsID "
         "AND i.PatientID = r.PatientID AND i.InsID = r.InsID)",
         0},
        {"refills without their original",
         "SELECT COUNT(*) FROM RXINFO r WHERE RefillNumber > 0 AND NOT EXISTS "
         "(SELECT 1 FROM RXINFO o WHERE o.Number = r.Number AND o.RefillNumber = 0)",
         0},
        {"coverage of a missing plan or patient",
         "SELECT COUNT(*) FROM PATINS i "
         "WHERE NOT EXISTS (SELECT 1 FROM INSURANCE s WHERE s.InsID = i.InsID) "
         "OR NOT EXISTS (SELECT 1 FROM PATIENT p WHERE p.PatientID = i.PatientID)",
         0},
        {"price tables of drugs and plans that do not exist",
         "SELECT COUNT(*) FROM DRUG g "
         "WHERE NOT EXISTS (SELECT 1 FROM PriceTable t WHERE t.PriceTableID = g.PriceTableID)",
         0},
    };
    for (const auto& check : checks)
        EXPECT_EQ(count(QString::fromLatin1(check.sql)), check.expected) << check.what;
}

TEST_P(SamplePharmacyTest, NewKeysComeAfterTheSamplesKeys) {
    ASSERT_TRUE(loadSamplePharmacy(*db).loaded);
    ASSERT_EQ(Procedures::newKeyProcedures().size(), 6u);
    for (const auto& c : Procedures::newKeyProcedures()) {
        const qlonglong highest =
            count(QStringLiteral("SELECT MAX(%1) FROM %2").arg(c.keyColumn, c.table));
        EXPECT_EQ(Procedures::newKey(*db, QString::fromLatin1(c.name)), highest + 1) << c.name;
    }
}

TEST_P(SamplePharmacyTest, ARaggedFileIsRefused) {
    const auto failure =
        caught([&] { loadTabSeparated(*db, "Store", "StoreID\tName\n1\tOne\n2\n"); });
    EXPECT_NE(failure.number, 0);
    EXPECT_TRUE(failure.description.contains("line 3")) << failure.description.toStdString();
}

TVRX_BACKENDS(SamplePharmacyTest);

}  // namespace
}  // namespace tvrx
