#include "records/PropertyCases.h"
#include "session/data/EmbeddedFiles.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/ErrorNumbers.h"

#include <algorithm>

namespace tvrx {
namespace {

class LiveFillRuleTest : public test::SchemaFixture {};

// No two fills that are not deleted share a number and a refill number; voided ones count.
TEST_P(LiveFillRuleTest, LiveFillsAreUniqueByNumberAndRefill) {
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
TEST_P(LiveFillRuleTest, TheUniqueRuleRefusesADatabaseWithTwinsAndNamesThem) {
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

TVRX_BACKENDS(LiveFillRuleTest);

}  // namespace
}  // namespace tvrx
