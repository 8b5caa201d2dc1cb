#include "records/PropertyCases.h"
#include "session/data/EmbeddedFiles.h"
#include "session/data/FillProcedures.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/ErrorNumbers.h"

#include <algorithm>

namespace tvrx {
namespace {

class FillProceduresTest : public test::SchemaFixture {
protected:
    QVariant call(const char* name, const QVariantList& args = {}) {
        return Procedures::call(*db, QString::fromLatin1(name), args).ReturnValue;
    }
    void fills(const char* tabSeparated) {
        loadTabSeparated(*db, QStringLiteral("RXINFO"), QString::fromUtf8(tabSeparated));
    }
};

// Deleted and voided fills count: a number once handed out is never handed out again.
TEST_P(FillProceduresTest, NumbersFollowTheHighestOfEveryFill) {
    EXPECT_EQ(call("dbo.MaxRxNumber").toInt(), 0);
    EXPECT_EQ(call("MaxRefill", {700}).toInt(), 0);
    fills(
        "Number\tRefillNumber\tVoided\tDeleted\n700\t0\t0\t0\n700\t1\t-1\t0\n"
        "700\t2\t0\t1\n705\t0\t0\t1\n");
    EXPECT_EQ(call("dbo.MaxRxNumber").toInt(), 705);
    EXPECT_EQ(call("dbo.MaxRefill", {700}).toInt(), 2);

    const Procedures::Result first = Procedures::call(*db, "spr_NewRxNewNumber", {3});
    const Procedures::Result second = Procedures::call(*db, "spr_NewRxNewNumber", {4});
    EXPECT_EQ(first.Output.value("@RxNumber").toInt(), 706);
    EXPECT_EQ(second.Output.value("@RxNumber").toInt(), 707);
    RecordSet row = db->OpenRecordSet(
        "SELECT Number, RefillNumber, RPhID, Deleted, Voided, OnHold, Qty, Patient, "
        "Date, DateChanged FROM RXINFO WHERE RXInfoID = ?",
        {first.ReturnValue});
    const QVariantList expected{706, 0, 3, 0, 0, 0, QVariant(), QVariant()};
    for (int i = 0; i < expected.size(); ++i) EXPECT_EQ(row.Fields(i), expected[i]) << i;
    EXPECT_TRUE(row.Fields("Date").toDateTime().isValid());
    EXPECT_EQ(row.Fields("Date"), row.Fields("DateChanged"));
}

// NewRefill stores its 25 values in their order, a null as a null.
TEST_P(FillProceduresTest, NewRefillStoresItsValuesInOrder) {
    const QDateTime filled(QDate(2026, 3, 14), QTime(9, 26, 53));
    const QVariantList values{500, 2, 7,  "O'Neil",   4,    3, QVariant(), "DRUG", 5,  true,
                              30,  1, 30, 2.5,        9.75, 5, QVariant(), filled, 12, "30",
                              3,   4, 22, QVariant(), "3"};
    ASSERT_EQ(values.size(), qsizetype(newRefillColumns().size()));
    const QVariant id = call("NewRefill", values);
    QStringList columns;
    for (const char* column : newRefillColumns()) columns << QString::fromLatin1(column);
    RecordSet row = db->OpenRecordSet(
        QStringLiteral("SELECT %1 FROM RXINFO WHERE RXInfoID = ?").arg(columns.join(", ")), {id});
    for (int i = 0; i < values.size(); ++i) {
        const QVariant stored = values[i].typeId() == QMetaType::Bool
                                    ? QVariant(values[i].toBool() ? 1 : 0)
                                    : values[i];
        test::expectSame(newRefillColumns()[size_t(i)], row.Fields(i), stored);
    }
    EXPECT_EQ(caught([&] { call("NewRefill", values.mid(1)); }).number, err::StatementError);
}

// No two fills that are not deleted share a number and a refill number; voided ones count.
TEST_P(FillProceduresTest, LiveFillsAreUniqueByNumberAndRefill) {
    const struct {
        const char* step;
        const char* sql;
        long failure;
    } steps[] = {
        {"a refill", "INSERT INTO RXINFO (Number, RefillNumber, Deleted) VALUES (800, 1, 0)", 0},
        {"the same again", "INSERT INTO RXINFO (Number, RefillNumber) VALUES (800, 1)",
         err::ConstraintViolated},
        {"a deleted twin", "INSERT INTO RXINFO (Number, RefillNumber, Deleted) VALUES (800, 1, 1)",
         0},
        {"a voided twin",
         "INSERT INTO RXINFO (Number, RefillNumber, Voided, Deleted) VALUES (800, 1, -1, 0)",
         err::ConstraintViolated},
        {"the deleted twin brought back", "UPDATE RXINFO SET Deleted = 0 WHERE Deleted = 1",
         err::ConstraintViolated},
        {"the live one deleted", "UPDATE RXINFO SET Deleted = -1 WHERE Deleted = 0", 0},
        {"the twin brought back then",
         "UPDATE RXINFO SET Deleted = 0 WHERE RXInfoID = (SELECT MAX(RXInfoID) FROM RXINFO)", 0},
    };
    for (const auto& s : steps)
        EXPECT_EQ(caught([&] { db->Execute(s.sql); }).number, s.failure) << s.step;
}

// The migration files up to the unique rule's, so that a database can be made that
// predates it.
std::span<const EmbeddedFile> filesBeforeUniqueRule() {
    const auto all = schemaMigrationFiles();
    const auto first = std::find_if(all.begin(), all.end(), [](const EmbeddedFile& file) {
        return file.name.starts_with("003_");
    });
    return all.first(size_t(first - all.begin()));
}

// A database that already holds two live fills under one number and refill keeps its
// schema and its rows, and is told which they are.
TEST_P(FillProceduresTest, TheUniqueRuleRefusesADatabaseWithTwinsAndNamesThem) {
    auto older = connectSecond();
    const MigrationSet before{"before the unique rule", filesBeforeUniqueRule, "SchemaVersion"};
    ASSERT_EQ(applySchema(*older, before).versionAfter, 2);
    loadTabSeparated(*older, "RXINFO",
                     "Number\tRefillNumber\tDeleted\n900\t1\t0\n900\t1\t\n900\t1\t1\n"
                     "901\t0\t0\n901\t0\t0\n901\t0\t0\n902\t0\t0\n");
    const auto refused = caught([&] { applySchema(*older); });
    EXPECT_EQ(refused.number, err::ConstraintViolated);
    EXPECT_TRUE(refused.description.endsWith(
        "delete or renumber them first (Number, RefillNumber, fills): 900, 1, 2; 901, 0, 3"))
        << refused.description.toStdString();
    EXPECT_EQ(schemaVersion(*older), 2);
    older->Execute("UPDATE RXINFO SET Deleted = 1 WHERE Number = 901 AND RXInfoID > 4");
    older->Execute("DELETE FROM RXINFO WHERE Number = 900 AND Deleted IS NULL");
    EXPECT_EQ(applySchema(*older).versionAfter, schemaVersion(*db));
}

TVRX_BACKENDS(FillProceduresTest);

}  // namespace
}  // namespace tvrx
