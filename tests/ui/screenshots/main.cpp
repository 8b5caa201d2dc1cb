// Draws the error screen and the choice dialog off screen and saves them as PNG pictures
// in the folder given, for the documentation.
#include "ui/ChoiceDialog.h"
#include "ui/ErrorScreen.h"

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

    const bool ok = save(screen, folder.filePath(QStringLiteral("error-screen.png"))) &&
                    save(choice, folder.filePath(QStringLiteral("choice-dialog.png")));
    return ok ? 0 : 1;
}
