#include "prescription/ClinicalKnowledge.h"
#include "prescription/DemoScreening.h"
#include "session/data/EmbeddedFiles.h"
#include "session/data/TabSeparated.h"
#include "support/DataRows.h"

#include <gtest/gtest.h>

namespace tvrx {
namespace {

// The knowledge built into the library: every pair's texts present, severities from the
// three words, every term and source known, and every drug of the sample pharmacy known.
TEST(ClinicalKnowledgeTest, TheBuiltInKnowledgeIsConsistent) {
    const ClinicalKnowledge& knowledge = ClinicalKnowledge::demonstration();
    EXPECT_EQ(knowledge.problems(), QStringList());
    EXPECT_GE(knowledge.interactionCount(), 15);
    EXPECT_LE(knowledge.interactionCount(), 30);
    for (const EmbeddedFile& file : samplePharmacyFiles()) {
        if (file.name != "DRUG.tsv") continue;
        const TabSeparated drugs =
            parseTabSeparated(QString::fromUtf8(file.text.data(), qsizetype(file.text.size())));
        const qsizetype ndc = drugs.columns.indexOf(QStringLiteral("NDC"));
        for (const QStringList& drug : drugs.rows) {
            EXPECT_TRUE(knowledge.knows(drug[ndc])) << drug[ndc].toStdString();
        }
        EXPECT_EQ(drugs.rows.size(), 8u);
    }
}

TEST(ClinicalKnowledgeTest, TheCheckFindsEachKindOfFault) {
    for (const test::DataRow& row :
         test::dataRows(QStringLiteral("clinical-knowledge-faults.tsv"))) {
        QMap<QString, QString> files = ClinicalKnowledge::builtInFiles();
        const QString& file = row.cells[0];
        ASSERT_TRUE(files.contains(file)) << row.where;
        files[file] += row.cells.mid(2).join(u'\t') + u'\n';
        const QStringList problems = ClinicalKnowledge::read(files).problems();
        ASSERT_FALSE(problems.isEmpty()) << row.where;
        EXPECT_TRUE(problems.join(u'\n').contains(row.cells[1]))
            << row.where << "\n"
            << problems.join(u'\n').toStdString();
    }
}

// One finding per pair of the knowledge, whichever fill comes first; nothing for the same
// drug, a shared ingredient or an unknown NDC. Allergy codes are read without blanks and
// in any case.
TEST(ClinicalKnowledgeTest, TheDemonstrationEngineFindsThePairsAndAllergies) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("demo-screening.tsv"))) {
        const QStringList& cell = row.cells;
        QStringList found;
        if (cell[0] == u"interaction") {
            DemoInteractionScreen screen;
            screen.Submit(cell[1], cell[2], QStringLiteral("RX 1"));
            for (qint32 index = 1; index <= screen.Count(); ++index) {
                found.append(screen.Item(index).Description.section(QStringLiteral(" - "), 1));
            }
        } else {
            DemoAllergyScreen screen;
            screen.Submit(cell[1], QStringLiteral("ALLERGY"), cell[2], QStringLiteral("DRUG"));
            EXPECT_EQ(screen.Count(), 0) << "nothing before the check";
            screen.Check();
            for (qint32 index = 1; index <= screen.Count(); ++index) {
                found.append(screen.Item(index).Class);
            }
        }
        EXPECT_EQ(found.isEmpty() ? QStringLiteral("-") : found.join(u';'), cell[3]) << row.where;
    }
}

}  // namespace
}  // namespace tvrx
