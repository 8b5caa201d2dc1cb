#include "eligibility/EligibilityFixture.h"
#include "reports/ConsolePreviewFace.h"

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

// A plan only the directory knows, on a console: the report's enabled buttons are a
// numbered choice, Close last, until none is left. The first creation is refused by the
// directory and leaves the button on; then the plan is created and attached.
TEST_P(AddFromEligibilityTest, TheConsoleButtonsAddAPlanKnownOnlyToTheDirectory) {
    EXPECT_FALSE(clsPatient().AddInsurance(true));
    PlanEntry acme;
    acme.BIN = QStringLiteral("610011");
    acme.ProcessorNumber = QStringLiteral("ACME RX");
    for (const auto& found :
         std::initializer_list<std::optional<PlanEntry>>{acme, std::nullopt, std::nullopt, acme})
        directory->answer(found);
    std::FILE* out = std::tmpfile();
    setPreviewFace(std::make_shared<ConsolePreviewFace>(QString(), out));
    for (int i = 0; i < 3; ++i) user->answerChoose(1);
    answered(QStringLiteral("two-plans.txt"));
    std::fclose(out);
    QStringList offered;
    for (const auto& call : user->callsOf(ScriptedUserInteraction::Kind::Choose))
        offered.append(call.args.value(0));
    EXPECT_EQ(offered, QStringList({"Add P&rmary Ins,&Close", "Add P&rmary Ins,&Close",
                                    "&Add Prmary Ins to Patient,&Close"}));
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT Phone || ID FROM INSURANCE")).toString(),
              "80055501014512345");
    plans["610011"] = db->Scalar(QStringLiteral("SELECT InsID FROM INSURANCE")).toInt();
    EXPECT_EQ(coverage("610011").value(2), "MEM12345");
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TVRX_BACKENDS(AddFromEligibilityTest);

}  // namespace
}  // namespace tvrx
