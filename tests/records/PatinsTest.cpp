#include "records/PATINS.h"

#include "records/PlanFixture.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/text/Conversions.h"

namespace tvrx {
namespace {

class PatinsTest : public test::PlanFixture {
protected:
    QVariant stored(const char* column, qint32 patInsId) {
        return db->Scalar(QStringLiteral("SELECT %1 FROM PATINS WHERE PatInsID = ?")
                              .arg(QString::fromLatin1(column)),
                          {patInsId});
    }

    // A plan whose texts carry blanks at both ends, as old rows may.
    qint16 paddedPlan(const QString& claimFields) {
        const qint16 key = addPlan(QStringLiteral("610011"), QStringLiteral("ACME RX"),
                                   QStringLiteral(" Acme Health  "));
        db->Execute(QStringLiteral("UPDATE INSURANCE SET InsCode = ' ACME ', Form = '51 ', "
                                   "ClaimFields = ? WHERE InsID = ?"),
                    {claimFields, key});
        return key;
    }
};

// The coverage reads its plan's code, name, version and claim fields, trimmed, whatever
// code it wrote; the expiration date keeps its day.
TEST_P(PatinsTest, InsertMakesAnEmptyRowThatUpdateFillsAndGetDataReads) {
    const qint16 plan = paddedPlan(QStringLiteral("CA,XMEDX"));
    PATINS inserted;
    inserted.Insert();
    ASSERT_GT(inserted.PatInsID, 0);
    EXPECT_EQ(inserted.InsID(), 0);
    EXPECT_EQ(inserted.Clarification, "0");
    EXPECT_EQ(inserted.OtherPayerCoverageType, "1");
    EXPECT_EQ(inserted.OtherPayerAmountPaidQualifier, "7");
    EXPECT_TRUE(stored("Clarification", inserted.PatInsID).isNull())
        << "until Update the members live only in the object";

    const std::vector<test::ColumnCase> cases{
        {"InsID", plan},
        {"InsCode", "TYPED", "TYPED", "ACME"},
    };
    test::expectEveryColumnWrittenAndRead(*db, patinsColumns(), &PATINS::PatInsID,
                                          inserted.PatInsID, {}, cases, inserted);
    PATINS read;
    read.PatInsID = inserted.PatInsID;
    EXPECT_TRUE(read.GetData());
    EXPECT_EQ(read.Name(), "Acme Health");
    EXPECT_EQ(read.Version(), "51");
    EXPECT_EQ(read.ClaimFields, "CA,XMEDX");
    EXPECT_TRUE(read.Medicare);
    inserted.Delete();
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATINS")).toInt(), 0);
}

// A row of nulls and a missing row read alike, but for the missing row's report; neither
// is a date, so the expiration date keeps its value.
TEST_P(PatinsTest, NullsAndAMissingRowReadAsDefaults) {
    PATINS coverage;
    coverage.Insert();
    coverage.Update();
    EXPECT_EQ(stored("ExpDate", coverage.PatInsID).toDateTime(), conv::ZeroDate())
        << "an empty date writes 12/30/1899";
    db->Execute(
        QStringLiteral("UPDATE PATINS SET ExpDate = NULL, PersonNumber = NULL, "
                       "InsID = NULL, PatientID = NULL, OPatInsID = NULL"));
    for (const qint32 key : {coverage.PatInsID, 4242}) {
        SCOPED_TRACE(key);
        PATINS read;
        read.PatInsID = key;
        read.ExpDate = test::at(2025, 1, 2);
        read.GroupNumber = QStringLiteral("old");
        read.PatientID = 5;
        read.OPatInsID = 6;
        EXPECT_EQ(read.GetData(), key != 4242);
        EXPECT_EQ(read.ExpDate, test::at(2025, 1, 2));
        EXPECT_EQ(read.GroupNumber, "");
        EXPECT_EQ(read.PersonNumber, "01");
        EXPECT_EQ(read.PatientID, 0);
        EXPECT_EQ(read.OPatInsID, 0);
        EXPECT_EQ(read.InsCode, "MISSING");
        EXPECT_EQ(read.Name(), "NEED TO RECHOOSE INSURANCE");
        EXPECT_EQ(read.Version(), "NA");
    }
    EXPECT_EQ(takeReports(), QStringList{test::reportOf("PATINS:GetData", err::NoCurrentRecord)});
}

TEST_P(PatinsTest, SettingInsIDReadsThePlanDeletedOrNot) {
    const struct {
        const char* claimFields;
        int deleted;
        bool medicare;
    } cases[] = {
        {"MED", 0, true},
        {"CA,CB,EMEDX", 1, true},
        {"CA,med", 0, false},
        {"", 0, false},
    };
    for (const auto& c : cases) {
        const qint16 plan = paddedPlan(QString::fromLatin1(c.claimFields));
        db->Execute(QStringLiteral("UPDATE INSURANCE SET Deleted = ? WHERE InsID = ?"),
                    {c.deleted, plan});
        PATINS coverage;
        coverage.setInsID(plan);
        EXPECT_EQ(coverage.InsCode, "ACME") << c.claimFields;
        EXPECT_EQ(coverage.Medicare, c.medicare) << c.claimFields;
    }
    PATINS coverage;
    coverage.ClaimFields = QStringLiteral("MED");
    coverage.setInsID(9999);
    EXPECT_EQ(coverage.InsID(), 9999);
    EXPECT_EQ(coverage.ClaimFields, "");
    EXPECT_FALSE(coverage.Medicare);
    EXPECT_EQ(coverage.Version(), "NA");
}

TEST_P(PatinsTest, ConnectionFailuresCarryEachRecordsLabel) {
    const struct {
        QString label;
        std::function<void(std::shared_ptr<DbConnection>)> hand;
    } records[] = {
        {"clsDrug:Connection", [](auto c) { PATINS().setConnection(std::move(c)); }},
        {"clsINSURANCE:Connection", [](auto c) { clsINSURANCE().setConnection(std::move(c)); }},
    };
    for (const auto& record : records) {
        record.hand(std::make_shared<DbConnection>(QStringLiteral("sqlite:///no/such/folder.db")));
        EXPECT_EQ(takeReports().filter(record.label),
                  QStringList{test::reportOf(record.label, err::LostLink)});
    }
}

TVRX_BACKENDS(PatinsTest);

}  // namespace
}  // namespace tvrx
