#pragma once

#include "records/ScriptedPlanLookup.h"
#include "records/clsPatient.h"
#include "reports/ScriptedPreviewFace.h"
#include "responses/ResponseJson.h"
#include "session/data/Procedures.h"
#include "support/DataRows.h"
#include "support/SchemaFixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace tvrx::test {

// The pharmacy's schema, a patient, a Reject table in the lookup database (the same one
// here), a scripted plan directory and a scripted preview. Answers are kept under
// tests/eligibility/answers in the readable notation and written out as bytes.
class EligibilityFixture : public SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPatient().setConnection(db);
        createTable(QStringLiteral("CREATE TABLE Reject (Code @TEXT@, Description @TEXT@)"));
        mdlMain::LookupConnection = connect();
        patientID = Procedures::newKey(*db, QStringLiteral("NewPatient"));
        db->Execute(QStringLiteral("UPDATE PATIENT SET FirstName = 'Maria', LastName = 'Lopez', "
                                   "FacilityID = 0, MDID = 0 WHERE PatientID = ?"),
                    {patientID});
        mdlMain::PlanLookups.set(directory->factory());
        setPreviewFace(face);
    }

    // A plan of the pharmacy: BIN, PCN, code, name, and "attached" when it is the patient's.
    qint32 addPlan(const QStringList& plan) {
        const qint32 insID = Procedures::newKey(*db, QStringLiteral("NewInsurance"));
        db->Execute(QStringLiteral("UPDATE INSURANCE SET BIN = ?, ProcNumb = ?, InsCode = ?, "
                                   "Name = ?, Deleted = 0 WHERE InsID = ?"),
                    {plan.value(0), plan.value(1), plan.value(2), plan.value(3), insID});
        if (plan.value(4) != QLatin1String("attached")) return insID;
        const qint32 patInsID = Procedures::newKey(*db, QStringLiteral("NewPatIns"));
        db->Execute(QStringLiteral("UPDATE PATINS SET InsID = ?, PatientID = ? WHERE PatInsID = ?"),
                    {insID, patientID, patInsID});
        return insID;
    }

    // The answer as the exchange leaves it; "-" a path where there is none.
    QString answerFile(const QString& name) {
        QFile file(folder.filePath(name));
        const NotationResult read = readResponseFile(answers + name);
        if (name != QLatin1String("-") && file.open(QIODevice::WriteOnly))
            file.write(read.text.value_or(QString()).toLatin1());
        return file.fileName();
    }

    // The patient as a host loads it, after reading the answer.
    clsPatient answered(const QString& name, bool shown = true) {
        clsPatient patient;
        patient.PatientID = patientID;
        patient.GetData();
        patient.SelectedNABP = QStringLiteral("4512345");
        patient.SelectedPrinter = QStringLiteral("Front Counter");
        EXPECT_EQ(patient.ParseClaimFile(answerFile(name)), shown) << name.toStdString();
        return patient;
    }

    const QString answers = QStringLiteral(TVRX_SOURCE_DIR "/tests/eligibility/answers/");
    qint32 patientID = 0;
    std::shared_ptr<PlanLookupScript> directory = std::make_shared<PlanLookupScript>();
    std::shared_ptr<ScriptedPreviewFace> face = std::make_shared<ScriptedPreviewFace>();
    QTemporaryDir folder;
};

}  // namespace tvrx::test
