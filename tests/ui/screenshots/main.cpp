// Draws the error screen, the choice dialog, the transmit wait and the claim result tree off
// screen and saves them
// as PNG pictures in the folder given, for the documentation.
#include "support/OutlineReplay.h"
#include "ui/ChoiceDialog.h"
#include "ui/ErrorScreen.h"
#include "ui/QtResultTree.h"
#include "ui/TransmitDialog.h"
#include "ui/frmClaim.h"

#include <QApplication>
#include <QDir>
#include <QPlainTextEdit>

#include <cstdio>

namespace {

bool save(QWidget& widget, const QString& path) {
    widget.show();
    QApplication::processEvents();
    const bool saved = widget.grab().save(path);
    std::fprintf(stderr, "%s %s\n", saved ? "saved" : "could not save", qPrintable(path));
    return saved;
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
        save(claim, folder.filePath(QStringLiteral("claim-result-tree.png")));
    return ok ? 0 : 1;
}
