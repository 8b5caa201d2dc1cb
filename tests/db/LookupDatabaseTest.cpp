#include "session/data/DbConnection.h"
#include "session/data/TabSeparated.h"

#include <QFile>

#include <gtest/gtest.h>

namespace tvrx {
namespace {

TabSeparated referenceFile(const char* name) {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/db/reference/") + QString::fromLatin1(name));
    if (!file.open(QIODevice::ReadOnly)) return {};
    return parseTabSeparated(QString::fromUtf8(file.readAll()));
}

// The lookup database the build made: each table holds its file's rows, in the file's order
// (the readers take the first match), every text as it stands in the file.
TEST(LookupDatabase, HoldsTheReferenceFilesRowByRow) {
    DbConnection lookup(QStringLiteral(TVRX_BINARY_DIR "/data/datalookup.db"));
    lookup.setReadOnly(true);
    ASSERT_NO_THROW(lookup.Open());
    const struct {
        const char* table;
        const char* file;
        qsizetype rows;
    } tables[] = {{"Reject", "reject_codes.tsv", 1382},
                  {"Conflict", "dur_conflict_codes.tsv", 61},
                  {"PlanDirectory", "plan_directory.tsv", 273}};
    for (const auto& t : tables) {
        const TabSeparated expected = referenceFile(t.file);
        ASSERT_TRUE(expected.error.isEmpty()) << t.file;
        ASSERT_EQ(qsizetype(expected.rows.size()), t.rows) << t.file;
        RecordSet rs = lookup.OpenRecordSet(QStringLiteral("Select * From %1").arg(t.table));
        EXPECT_EQ(rs.FieldNames(), expected.columns) << t.table;
        ASSERT_EQ(rs.RecordCount(), t.rows) << t.table;
        for (const QStringList& row : expected.rows) {
            EXPECT_EQ(rs.Fields(0).toString(), row[0]) << t.table;
            EXPECT_EQ(rs.Fields(1).toString(), row[1]) << t.table;
            rs.MoveNext();
        }
    }
    EXPECT_EQ(lookup.Scalar(QStringLiteral("Select Description From Reject Where Code = ?"),
                            {QStringLiteral("42")}),
              QVariant(QStringLiteral(
                  "Plan's Prescriber database indicates Prescriber ID is inactive/expired")));
}

}  // namespace
}  // namespace tvrx
