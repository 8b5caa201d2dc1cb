#include "records/PATINS.h"

#include "records/PlanFixture.h"
#include "session/Conversions.h"
#include "session/ErrorNumbers.h"

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

TEST_P(PatinsTest, InsertMakesAnEmptyRowThatUpdateFillsAndGetDataReads) {
    const qint16 plan = paddedPlan(QStringLiteral("CA,XMEDX"));
    PATINS written;
    written.Insert();
    ASSERT_GT(written.PatInsID, 0);
    EXPECT_EQ(written.InsID(), 0);
    EXPECT_EQ(written.Clarification, "0");
    EXPECT_EQ(written.OtherPayerCoverageType, "1");
    EXPECT_EQ(written.OtherPayerAmountPaidQualifier, "7");
    EXPECT_TRUE(stored("Clarification", written.PatInsID).isNull())
        << "until Update the members live only in the object";

    written.setInsID(plan);
    written.OPatInsID = 7;
    written.PatientID = 12;
    written.InsCode = QStringLiteral("TYPED");
    written.GroupNumber = QStringLiteral("GR'P 1");
    written.InsuranceGroup = QStringLiteral("IG");
    written.Relationship = QStringLiteral("H");
    written.CardNumber = QStringLiteral("SC448120931");
    written.SubscribersName = QStringLiteral("JOHN O'BRIEN");
    written.ExpDate = QDateTime(QDate(2027, 5, 31), QTime(16, 45, 10));
    written.PersonNumber = QStringLiteral("02");
    written.Location = QStringLiteral("L");
    written.OtherCoverage = QStringLiteral("0");
    written.Update();
    EXPECT_TRUE(reporter->reports().isEmpty());
    EXPECT_EQ(stored("InsCode", written.PatInsID).toString(), "TYPED") << "written, never read";

    PATINS read;
    read.PatInsID = written.PatInsID;
    ASSERT_TRUE(read.GetData());
    EXPECT_TRUE(reporter->reports().isEmpty());
    EXPECT_EQ(read.InsID(), plan);
    EXPECT_EQ(read.InsCode, "ACME") << "the plan's code, trimmed";
    EXPECT_EQ(read.Name(), "Acme Health");
    EXPECT_EQ(read.Version(), "51");
    EXPECT_EQ(read.ClaimFields, "CA,XMEDX");
    EXPECT_TRUE(read.Medicare);
    EXPECT_EQ(read.OPatInsID, 7);
    EXPECT_EQ(read.PatientID, 12);
    EXPECT_EQ(read.GroupNumber, "GR'P 1") << "a quote is stored as typed";
    EXPECT_EQ(read.InsuranceGroup, "IG");
    EXPECT_EQ(read.Relationship, "H");
    EXPECT_EQ(read.CardNumber, "SC448120931");
    EXPECT_EQ(read.SubscribersName, "JOHN O'BRIEN");
    EXPECT_EQ(read.ExpDate, QDateTime(QDate(2027, 5, 31), QTime(0, 0))) << "MM/DD/YYYY";
    EXPECT_EQ(read.PersonNumber, "02");
    EXPECT_EQ(read.Location, "L");
    EXPECT_EQ(read.OtherCoverage, "0");
    EXPECT_EQ(read.Clarification, "0");
    EXPECT_EQ(read.OtherPayerCoverageType, "1");
    EXPECT_EQ(read.OtherPayerAmountPaidQualifier, "7");
}

TEST_P(PatinsTest, NullsAndAnUnsetDate) {
    PATINS coverage;
    coverage.Insert();
    coverage.Update();
    EXPECT_EQ(stored("ExpDate", coverage.PatInsID).toDateTime(), conv::ZeroDate())
        << "an empty date writes 12/30/1899";
    db->Execute(
        QStringLiteral("UPDATE PATINS SET ExpDate = NULL, PersonNumber = NULL, "
                       "InsID = NULL, PatientID = NULL, OPatInsID = NULL"));
    PATINS read;
    read.PatInsID = coverage.PatInsID;
    read.ExpDate = QDateTime(QDate(2025, 1, 2), QTime(0, 0));
    read.PatientID = 5;
    read.OPatInsID = 6;
    ASSERT_TRUE(read.GetData());
    EXPECT_TRUE(reporter->reports().isEmpty());
    EXPECT_EQ(read.ExpDate, QDateTime(QDate(2025, 1, 2), QTime(0, 0))) << "not a date: kept";
    EXPECT_EQ(read.PersonNumber, "01");
    EXPECT_EQ(read.PatientID, 0);
    EXPECT_EQ(read.OPatInsID, 0);
    EXPECT_EQ(read.InsCode, "MISSING");
}

TEST_P(PatinsTest, AMissingRowClearsTheMembersWithOneReport) {
    PATINS coverage;
    coverage.PatInsID = 4242;
    coverage.GroupNumber = QStringLiteral("old");
    coverage.PatientID = 3;
    coverage.ExpDate = QDateTime(QDate(2025, 1, 2), QTime(0, 0));
    EXPECT_FALSE(coverage.GetData());
    EXPECT_EQ(coverage.InsCode, "MISSING");
    EXPECT_EQ(coverage.Name(), "NEED TO RECHOOSE INSURANCE");
    EXPECT_EQ(coverage.Version(), "NA");
    EXPECT_EQ(coverage.PersonNumber, "01");
    EXPECT_EQ(coverage.GroupNumber, "");
    EXPECT_EQ(coverage.PatientID, 0);
    EXPECT_EQ(coverage.ExpDate, QDateTime(QDate(2025, 1, 2), QTime(0, 0)));
    EXPECT_EQ(failuresOf(QStringLiteral("PATINS:GetData")),
              std::vector<long>{err::NoCurrentRecord});
    EXPECT_EQ(reporter->reports().size(), 1);
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
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TEST_P(PatinsTest, DeleteRemovesTheRow) {
    PATINS coverage;
    coverage.Insert();
    coverage.Delete();
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATINS")).toInt(), 0);
    EXPECT_TRUE(reporter->reports().isEmpty());
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
        reporter->clear();
        record.hand(std::make_shared<DbConnection>(QStringLiteral("sqlite:///no/such/folder.db")));
        EXPECT_EQ(failuresOf(record.label), std::vector<long>{err::LostLink});
    }
}

TVRX_BACKENDS(PatinsTest);

}  // namespace
}  // namespace tvrx
