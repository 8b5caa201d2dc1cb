#pragma once

#include "records/ScriptedPlanLookup.h"
#include "records/clsPatient.h"
#include "reports/ScriptedPreviewFace.h"
#include "responses/ResponseJson.h"
#include "session/data/Procedures.h"
#include "session/runtime/Session.h"
#include "support/DataRows.h"
#include "support/SchemaFixture.h"

#include <QFile>
#include <QTemporaryDir>

namespace tvrx::test {

// The pharmacy's schema, a patient, a Reject table in the lookup database (the same
// database here), a scripted plan directory and a scripted preview. Answers are files under
// tests/eligibility/answers in the readable notation; the test writes them out as bytes.
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
        restart();
    }

    // A new plan directory script and preview, as for another run of the report.
    void restart() {
        directory = std::make_shared<PlanLookupScript>();
        mdlMain::PlanLookups.set(directory->factory());
        face = std::make_shared<ScriptedPreviewFace>();
        setPreviewFace(face);
    }

    void addReject(const QString& code, const QString& description) {
        db->Execute(QStringLiteral("INSERT INTO Reject (Code, Description) VALUES (?, ?)"),
                    {code, description});
    }

    // A plan of the pharmacy; attached, the patient has a coverage row of it.
    qint32 addPlan(const QString& bin, const QString& pcn, const QString& code, const QString& name,
                   bool attached) {
        const qint32 insID = Procedures::newKey(*db, QStringLiteral("NewInsurance"));
        db->Execute(QStringLiteral("UPDATE INSURANCE SET BIN = ?, ProcNumb = ?, InsCode = ?, "
                                   "Name = ?, Form = '51', Deleted = 0 WHERE InsID = ?"),
                    {bin, pcn, code, name, insID});
        if (attached) {
            const qint32 patInsID = Procedures::newKey(*db, QStringLiteral("NewPatIns"));
            db->Execute(
                QStringLiteral("UPDATE PATINS SET InsID = ?, PatientID = ? WHERE PatInsID = ?"),
                {insID, patientID, patInsID});
        }
        return insID;
    }

    // The answer file as the exchange leaves it; "-" a path where there is none.
    QString answerFile(const QString& name) {
        const QString path = folder.filePath(name == QLatin1String("-") ? "missing.RSP" : name);
        if (name == QLatin1String("-")) return path;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        const NotationResult read =
            readResponseFile(QStringLiteral(TVRX_SOURCE_DIR "/tests/eligibility/answers/") + name);
        EXPECT_TRUE(read) << name.toStdString() << ": " << read.error.toStdString();
        file.write(read.text.value_or(QString()).toLatin1());
        return path;
    }

    static QString expectedText(const QString& name) {
        QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/eligibility/answers/") + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        QString text = QString::fromUtf8(file.readAll());
        if (text.endsWith(u'\n')) text.chop(1);
        return text;
    }

    // The patient as a host loads it.
    clsPatient loadedPatient() const {
        clsPatient patient;
        patient.PatientID = patientID;
        patient.GetData();
        patient.SelectedNABP = QStringLiteral("4512345");
        patient.SelectedPrinter = QStringLiteral("Front Counter");
        return patient;
    }

    qint32 patientID = 0;
    std::shared_ptr<PlanLookupScript> directory;
    std::shared_ptr<ScriptedPreviewFace> face;
    QTemporaryDir folder;
};

}  // namespace tvrx::test
