#include "eligibility/EligibilityFixture.h"
#include "eligibility/frmEligibility.h"

namespace tvrx {
namespace {

class AddFromEligibilityTest : public test::EligibilityFixture {
protected:
    void SetUp() override {
        EligibilityFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        addReject(QStringLiteral("65"), QStringLiteral("PATIENT NOT COVERED"));
    }

    // The pharmacy's plans of the sample answers, none of them the patient's.
    void addKnownPlans() {
        plans["primary"] = addPlan("610011", "ACME RX", "ACME", "ACME HEALTH PLAN", false);
        plans["secondary"] = addPlan("610222", "PCN12345678X", "RIVER", "BLUE RIVER", false);
        plans["medicare"] = addPlan("610097", "MEDDPRIME", "MEDD", "MEDICARE D", false);
    }

    // The patient as a host has it after reading the answer.
    clsPatient answered(const QString& answer) {
        clsPatient patient = loadedPatient();
        EXPECT_TRUE(patient.ParseClaimFile(answerFile(answer)));
        reporter->clear();
        return patient;
    }

    QVariantList coverageRow(qint32 insID) {
        RecordSet rs = db->OpenRecordSet(
            QStringLiteral("SELECT Relationship, PersonNumber, CardNumber, GroupNumber, InsCode, "
                           "PatInsID FROM PATINS WHERE InsID = ? AND PatientID = ?"),
            {insID, patientID});
        if (rs.Eof()) return {};
        QVariantList row;
        for (int i = 0; i < 6; ++i) row.append(rs.Fields(i));
        return row;
    }

    QVariant patientColumn(const char* name) {
        return db->Scalar(
            QStringLiteral("SELECT %1 FROM PATIENT WHERE PatientID = ?").arg(QLatin1String(name)),
            {patientID});
    }

    QHash<QString, qint32> plans;
};

TEST_P(AddFromEligibilityTest, AttachingWritesTheCardValuesOfTheAnswer) {
    for (const test::DataRow& row : test::dataRows("eligibility-attach.tsv")) {
        SCOPED_TRACE(row.where);
        db->Execute(QStringLiteral("DELETE FROM PATINS"));
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
        addKnownPlans();
        clsPatient patient = answered(row.cells[0]);
        const bool primary = row.cells[1] == "primary";
        const QString planKey = row.cells[0] == "medicare.txt" ? "medicare" : row.cells[1];

        ASSERT_TRUE(patient.AddPatientInsurance(primary));
        const QVariantList written = coverageRow(plans[planKey]);
        ASSERT_EQ(written.size(), 6);
        QStringList values;
        for (int i = 0; i < 5; ++i) values.append(written[i].toString());
        EXPECT_EQ(values, row.cells.mid(2, 5));
        EXPECT_EQ(patientColumn("PatInsID").toInt(), written[5].toInt());
        EXPECT_EQ(patientColumn("FirstName").toString(), "Maria") << "the patient stays whole";
        EXPECT_TRUE(primary ? patient.PatientPrimaryConfigured()
                            : patient.PatientSecondaryConfigured());

        // A second attach finds the row and writes nothing.
        const qlonglong rows =
            db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATINS")).toLongLong();
        EXPECT_TRUE(patient.AddPatientInsurance(primary));
        EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATINS")).toLongLong(), rows);
        EXPECT_TRUE(reporter->reports().isEmpty());
    }
}

TEST_P(AddFromEligibilityTest, TheDefaultPlanFollowsTheOrderOfAttaching) {
    for (const test::DataRow& row : test::dataRows("eligibility-default-plan.tsv")) {
        SCOPED_TRACE(row.where);
        db->Execute(QStringLiteral("DELETE FROM PATINS"));
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
        addKnownPlans();
        clsPatient patient = answered(QStringLiteral("two-plans.txt"));
        for (const QString& plan : row.cells[0].split(u','))
            EXPECT_TRUE(patient.AddPatientInsurance(plan == "primary"));
        const QVariantList expected = coverageRow(plans[row.cells[1]]);
        ASSERT_EQ(expected.size(), 6);
        EXPECT_EQ(patient.PatInsID, expected[5].toInt());
        EXPECT_EQ(patientColumn("PatInsID").toInt(), expected[5].toInt());
    }
}

// The road of a plan the pharmacy does not have: the report's buttons create it from the
// directory, then attach it, each turning itself off and the next one on.
TEST_P(AddFromEligibilityTest, TheButtonsAddAPlanKnownOnlyToTheDirectory) {
    PlanEntry acme;
    acme.BIN = QStringLiteral("610011");
    acme.ProcessorNumber = QStringLiteral("ACME RX");
    acme.PlanName = QStringLiteral("ACME HEALTH PLAN");
    acme.ShortName = QStringLiteral("ACME");
    acme.Version = QStringLiteral("51");
    directory->answer(acme);          // the report's look-up of the primary
    directory->answer(std::nullopt);  // the secondary: unknown
    directory->answer(acme);          // the creation of the primary
    QStringList steps;
    face->onShow([&](frmPrint& shown) {
        auto& form = dynamic_cast<frmEligibility&>(shown);
        const auto enabled = [&] {
            QStringList on;
            for (const frmPrint::SideButton& button : form.sideButtons())
                if (button.Enabled) on.append(button.Name);
            return on.join(u',');
        };
        steps << enabled();
        form.sideButton_Click(QStringLiteral("cmdAddPrimary"));
        steps << enabled();
        form.sideButton_Click(QStringLiteral("cmdAddPrimaryPatient"));
        steps << enabled();
    });
    clsPatient patient = loadedPatient();
    ASSERT_TRUE(patient.ParseClaimFile(answerFile(QStringLiteral("two-plans.txt"))));
    EXPECT_EQ(steps, (QStringList{"cmdAddPrimary", "cmdAddPrimaryPatient", ""}));

    const qint32 insID =
        db->Scalar(QStringLiteral("SELECT InsID FROM INSURANCE WHERE BIN = '610011'")).toInt();
    ASSERT_GT(insID, 0);
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT Phone FROM INSURANCE WHERE InsID = ?"), {insID})
                  .toString(),
              "8005550101");
    EXPECT_EQ(
        db->Scalar(QStringLiteral("SELECT ID FROM INSURANCE WHERE InsID = ?"), {insID}).toString(),
        "4512345");
    EXPECT_EQ(coverageRow(insID).value(2).toString(), "MEM12345");
    EXPECT_TRUE(patient.PrimaryConfigured() && patient.PatientPrimaryConfigured());
    EXPECT_EQ(directory->pendingAnswers(), 0);
    EXPECT_TRUE(reporter->reports().isEmpty());
}

// Nothing to add: no answer read, or a plan neither the pharmacy nor the directory has.
TEST_P(AddFromEligibilityTest, WithoutAPlanToAddNothingChanges) {
    clsPatient fresh = loadedPatient();
    EXPECT_FALSE(fresh.AddInsurance(true));
    EXPECT_FALSE(fresh.AddPatientInsurance(false));

    directory->answer(std::nullopt);
    directory->answer(std::nullopt);
    clsPatient patient = answered(QStringLiteral("two-plans.txt"));
    directory->answer(std::nullopt);
    EXPECT_FALSE(patient.AddInsurance(true));
    EXPECT_FALSE(patient.AddPatientInsurance(true));
    EXPECT_FALSE(patient.PrimaryConfigured() || patient.PatientPrimaryConfigured());
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM INSURANCE")).toLongLong(), 0);
    EXPECT_EQ(db->Scalar(QStringLiteral("SELECT COUNT(*) FROM PATINS")).toLongLong(), 0);
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TVRX_BACKENDS(AddFromEligibilityTest);

}  // namespace
}  // namespace tvrx
