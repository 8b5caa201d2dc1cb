// Draws the error screen, the choice dialog, the transmit wait, the claim result tree,
// the report preview and the eligibility report off screen and saves them as PNG pictures
// in the folder given, for the documentation.
#include "prescription/DemoScreening.h"
#include "prescription/InteractionReport.h"
#include "records/ScriptedPlanLookup.h"
#include "records/clsPatient.h"
#include "responses/ResponseJson.h"
#include "session/data/DbConnection.h"
#include "session/data/Procedures.h"
#include "session/data/Schema.h"
#include "session/runtime/Session.h"
#include "support/OutlineReplay.h"
#include "ui/ChoiceDialog.h"
#include "ui/ErrorScreen.h"
#include "ui/PreviewDialog.h"
#include "ui/QtPrintedDocument.h"
#include "ui/QtResultTree.h"
#include "ui/TransmitDialog.h"
#include "ui/frmClaim.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <cstdio>

namespace {

bool save(QWidget& widget, const QString& path) {
    widget.show();
    QApplication::processEvents();
    const bool saved = widget.grab().save(path);
    std::fprintf(stderr, "%s %s\n", saved ? "saved" : "could not save", qPrintable(path));
    return saved;
}

// The demonstration engine's findings for pairs of the sample pharmacy and common drugs.
QList<tvrx::InteractionResult> findings(const QList<QStringList>& pairs) {
    tvrx::DemoInteractionScreen screen;
    for (const QStringList& pair : pairs) screen.Submit(pair[0], pair[1], pair[2]);
    QList<tvrx::InteractionResult> found;
    for (qint32 index = 1; index <= screen.Count(); ++index) found.append(screen.Item(index));
    return found;
}

// The preview of a document in a zoom mode, from a page.
bool savePreview(tvrx::frmPrint& form, int zoomMode, qint32 page, const QString& path) {
    form.cmbZoomMode.ListIndex = zoomMode;
    form.cmbZoomMode_Click();
    form.vp().setPreviewPage(page);
    form.UpdateScroller();
    tvrx::PreviewDialog dialog(form);
    dialog.resize(900, 720);
    dialog.showState();
    return save(dialog, path);
}

bool savePreviews(const QDir& folder) {
    const QList<tvrx::InteractionResult> found = findings({
        {"52864034801", "52864011701",
         "INTERACTION FOUND FOR RX 100005 FILLED ON 3/2/2026 10:27:30 AM"},
        {"99999004101", "99999001901",
         "INTERACTION FOUND FOR RX 100012 FILLED ON 2/27/2026 4:05:12 PM"},
        {"99999003501", "99999000601",
         "INTERACTION FOUND FOR RX 100015 FILLED ON 3/1/2026 9:41:55 AM"},
        {"60731041101", "99999003601",
         "INTERACTION FOUND FOR RX 100017 FILLED ON 3/4/2026 11:02:40 AM"},
        {"60731063409", "99999000701",
         "INTERACTION FOUND FOR RX 100020 FILLED ON 3/9/2026 2:18:07 PM"},
    });
    tvrx::frmPrint single(std::make_shared<tvrx::QtPrintedDocument>());
    tvrx::drawInteractionReport(single.vp(), found.first(), QString());
    single.Form_Load();
    // The five findings as one document, a page each.
    tvrx::frmPrint several(std::make_shared<tvrx::QtPrintedDocument>());
    several.vp().StartDoc();
    for (const tvrx::InteractionResult& finding : found) {
        if (&finding != &found.first()) several.vp().NewPage();
        tvrx::drawInteractionFinding(several.vp(), finding);
    }
    several.vp().EndDoc();
    several.Form_Load();
    return savePreview(single, 3, 1, folder.filePath("preview-one-page-whole-page.png")) &&
           savePreview(single, 4, 1, folder.filePath("preview-one-page-page-width.png")) &&
           savePreview(several, 2, 2, folder.filePath("preview-five-pages-two-pages.png")) &&
           savePreview(several, 1, 1, folder.filePath("preview-five-pages-thumbnails.png"));
}

// Shows the eligibility report's dialog once and keeps its picture.
class SavingFace : public tvrx::PreviewFace {
public:
    explicit SavingFace(QString path) : path_(std::move(path)) {}
    void showModal(tvrx::frmPrint& form) override {
        tvrx::PreviewDialog dialog(form);
        dialog.resize(1100, 760);
        dialog.showState();
        saved = save(dialog, path_);
    }
    void refresh(tvrx::frmPrint& /*form*/) override {}
    void close(tvrx::frmPrint& /*form*/) override {}
    bool saved = false;

private:
    QString path_;
};

// The eligibility report of a two-plan answer, read as a host reads it: the primary plan
// is the pharmacy's but not yet the patient's, the secondary only in the plan directory.
bool saveEligibility(const QDir& folder) {
    QTemporaryDir work;
    auto db = std::make_shared<tvrx::DbConnection>();
    db->setConnectionString(work.filePath(QStringLiteral("pharmacy.db")));
    db->Open();
    tvrx::applySchema(*db);
    tvrx::clsPatient().setConnection(db);
    db->Execute(QStringLiteral("CREATE TABLE Reject (Code TEXT, Description TEXT)"));
    db->Execute(QStringLiteral("INSERT INTO Reject VALUES ('65', 'PATIENT NOT COVERED')"));
    auto lookup = std::make_shared<tvrx::DbConnection>();
    lookup->setConnectionString(db->ConnectionString());
    lookup->Open();
    tvrx::mdlMain::LookupConnection = lookup;
    const qint32 insID = tvrx::Procedures::newKey(*db, QStringLiteral("NewInsurance"));
    db->Execute(QStringLiteral("UPDATE INSURANCE SET BIN = '610011', ProcNumb = 'ACME RX', "
                               "InsCode = 'ACME', Name = 'ACME HEALTH PLAN' WHERE InsID = ?"),
                {insID});
    const qint32 patientID = tvrx::Procedures::newKey(*db, QStringLiteral("NewPatient"));
    db->Execute(QStringLiteral("UPDATE PATIENT SET FirstName = 'Maria', LastName = 'Lopez', "
                               "FacilityID = 0, MDID = 0 "
                               "WHERE PatientID = ?"),
                {patientID});
    auto directory = std::make_shared<tvrx::PlanLookupScript>();
    tvrx::PlanEntry river;
    river.BIN = QStringLiteral("610222");
    river.ProcessorNumber = QStringLiteral("PCN12345678X");
    directory->answer(river);
    tvrx::mdlMain::PlanLookups.set(directory->factory());

    const tvrx::NotationResult answer = tvrx::readResponseFile(
        QStringLiteral(TVRX_SOURCE_DIR "/tests/eligibility/answers/two-plans.txt"));
    QFile file(work.filePath(QStringLiteral("11241530.RSP")));
    if (!answer || !file.open(QIODevice::WriteOnly)) return false;
    file.write(answer.text.value_or(QString()).toLatin1());
    file.close();

    tvrx::mdlMain::Documents.set([] { return std::make_shared<tvrx::QtPrintedDocument>(); });
    auto face =
        std::make_shared<SavingFace>(folder.filePath(QStringLiteral("eligibility-report.png")));
    tvrx::setPreviewFace(face);
    tvrx::clsPatient patient;
    patient.PatientID = patientID;
    patient.GetData();
    const bool shown = patient.ParseClaimFile(file.fileName());
    tvrx::mdlMain::resetSession();
    return shown && face->saved;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));

    tvrx::ErrorReport report;
    report.description = QStringLiteral("Error getting price table");
    report.number = QStringLiteral("200");
    report.source = QStringLiteral("Debug");
    report.line = 40;
    report.location = QStringLiteral("TVRX1.mdlMain.GetPrice");
    tvrx::ErrorScreen screen(report, QStringLiteral("Tessivar"), {});
    screen.commentsBox()->setPlainText(
        QStringLiteral("Patient Jane Roe, Lisinopril 10 mg, ACME Health. Refill at the counter."));

    tvrx::ChoiceDialog choice(
        QStringLiteral("PROCESS &MAIN,PROCESS &OTHER,&CANCEL"), 3, 1,
        QStringLiteral("PROCESS PRESCRIPTION"),
        QStringLiteral("This prescription has both a main insurance (ACME Health) and an other "
                       "insurance (Blue Plains). Click below on how you want to submit this "
                       "claim."));

    // The wait 23 seconds in, and once the minute is over.
    tvrx::frmTransmit form;
    form.Delay = 60;
    form.Form_Load();
    for (int second = 0; second < 23; ++second) form.Timer1_Timer();
    tvrx::TransmitDialog waiting;
    waiting.showState(form);
    for (int second = 23; second < 75; ++second) form.Timer1_Timer();
    tvrx::TransmitDialog overtime;
    overtime.showState(form);

    // The tree of a paid claim with its DUR findings, as the core's tests expect it.
    tvrx::frmClaim claim;
    claim.resize(560, 620);
    tvrx::QtResultTree tree(*claim.tree());
    const bool replayed = tvrx::test::replayOutline(
        tvrx::test::outlineTreeLines(
            QStringLiteral(TVRX_SOURCE_DIR "/tests/responses/tree/paid-32.txt")),
        tree);

    const bool ok =
        replayed && save(screen, folder.filePath(QStringLiteral("error-screen.png"))) &&
        save(choice, folder.filePath(QStringLiteral("choice-dialog.png"))) &&
        save(waiting, folder.filePath(QStringLiteral("transmit-dialog.png"))) &&
        save(overtime, folder.filePath(QStringLiteral("transmit-dialog-overtime.png"))) &&
        save(claim, folder.filePath(QStringLiteral("claim-result-tree.png"))) &&
        savePreviews(folder) && saveEligibility(folder);
    return ok ? 0 : 1;
}
