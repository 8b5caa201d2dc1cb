#include "eligibility/EligibilityFixture.h"

namespace tvrx {
namespace {

class AddFromEligibilityTest : public test::EligibilityFixture {
protected:
    void SetUp() override {
        EligibilityFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        db->Execute(QStringLiteral("INSERT INTO Reject VALUES ('65', 'PATIENT NOT COVERED')"));
    }

    // The plans of the sample answers, in the pharmacy but none of them the patient's.
    void addKnownPlans() {
        db->Execute(QStringLiteral("DELETE FROM PATINS"));
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
        for (const QStringList& plan : {QStringList{"610011", "ACME RX", "ACME", "ACME HEALTH"},
                                        QStringList{"610222", "PCN12345678X", "RIVER", "RIVER"},
                                        QStringList{"610097", "MEDDPRIME", "MEDD", "MEDICARE"}})
            plans[plan[0]] = addPlan(plan);
    }

    // The patient's coverage row of the plan: the columns the buttons write, then its key.
    QStringList coverage(const QString& bin) {
        RecordSet rs = db->OpenRecordSet(
            QStringLiteral("SELECT Relationship, PersonNumber, CardNumber, GroupNumber, InsCode, "
                           "PatInsID FROM PATINS WHERE InsID = ? AND PatientID = ?"),
            {plans.value(bin), patientID});
        QStringList row;
        for (int i = 0; !rs.Eof() && i < 6; ++i) row.append(rs.Fields(i).toString());
        return row;
    }

    QString patientColumn(const char* name) {
        return db
            ->Scalar(QStringLiteral("SELECT %1 FROM PATIENT WHERE PatientID = ?")
                         .arg(QLatin1String(name)),
                     {patientID})
            .toString();
    }

    QHash<QString, qint32> plans;
};

TEST_P(AddFromEligibilityTest, AttachingWritesTheCardValuesOfTheAnswer) {
    for (const test::DataRow& row : test::dataRows("eligibility-attach.tsv")) {
        SCOPED_TRACE(row.where);
        addKnownPlans();
        clsPatient patient = answered(row.cells[0]);
        reporter->clear();
        const bool primary = row.cells[1] == "primary";
        ASSERT_TRUE(patient.AddPatientInsurance(primary));
        const QStringList written = coverage(row.cells[2]);
        EXPECT_EQ(written.mid(0, 5), row.cells.mid(3, 5));
        EXPECT_EQ(patientColumn("PatInsID"), written.value(5));
        EXPECT_EQ(patientColumn("FirstName"), "Maria") << "the patient is written whole";
        const auto& state = patient.eligibilityState();
        EXPECT_TRUE(primary ? state.PatientPrimaryConfigured : state.PatientSecondaryConfigured);
        // A second attach finds the row and writes nothing.
        EXPECT_TRUE(patient.AddPatientInsurance(primary));
        EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATINS")).toInt(), 1);
        EXPECT_TRUE(reporter->reports().isEmpty());
    }
}

TEST_P(AddFromEligibilityTest, TheDefaultPlanFollowsTheOrderOfAttaching) {
    for (const test::DataRow& row : test::dataRows("eligibility-default-plan.tsv")) {
        SCOPED_TRACE(row.where);
        addKnownPlans();
        clsPatient patient = answered(QStringLiteral("two-plans.txt"));
        for (const QString& plan : row.cells[0].split(u','))
            EXPECT_TRUE(patient.AddPatientInsurance(plan == "primary"));
        const QString expected = coverage(row.cells[1] == "primary" ? "610011" : "610222").value(5);
        EXPECT_EQ(QString::number(patient.PatInsID), expected);
        EXPECT_EQ(patientColumn("PatInsID"), expected);
    }
}

// A plan only the directory knows: the report's buttons create it, then attach it, each
// turning itself off and the next one on. Without a plan to add, nothing changes.
TEST_P(AddFromEligibilityTest, TheButtonsAddAPlanKnownOnlyToTheDirectory) {
    EXPECT_FALSE(clsPatient().AddInsurance(true));
    PlanEntry acme;
    acme.BIN = QStringLiteral("610011");
    acme.ProcessorNumber = QStringLiteral("ACME RX");
    acme.PlanName = QStringLiteral("ACME HEALTH PLAN");
    // The report's look-ups of both plans, then the creation of each: the secondary's fails.
    for (const auto& found :
         std::initializer_list<std::optional<PlanEntry>>{acme, std::nullopt, std::nullopt, acme})
        directory->answer(found);
    QStringList steps;
    face->onShow([&](frmPrint& form) {
        for (const char* click : {"", "cmdAddSecondary", "cmdAddPrimary", "cmdAddPrimaryPatient"}) {
            form.sideButton_Click(QString::fromLatin1(click));
            QStringList on;
            for (const frmPrint::SideButton& button : form.sideButtons())
                if (button.Enabled) on.append(button.Name);
            steps.append(on.join(u','));
        }
    });
    const clsPatient patient = answered(QStringLiteral("two-plans.txt"));
    EXPECT_EQ(steps, QStringList({"cmdAddPrimary", "cmdAddPrimary", "cmdAddPrimaryPatient", ""}));
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT Phone || ID FROM INSURANCE WHERE BIN = '610011'"))
                  .toString(),
              "80055501014512345");
    plans["610011"] = db->Scalar(QStringLiteral("SELECT InsID FROM INSURANCE")).toInt();
    EXPECT_EQ(coverage("610011").value(2), "MEM12345");
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM INSURANCE")).toInt(), 1);
    EXPECT_EQ(directory->pendingAnswers(), 0);
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TVRX_BACKENDS(AddFromEligibilityTest);

}  // namespace
}  // namespace tvrx
