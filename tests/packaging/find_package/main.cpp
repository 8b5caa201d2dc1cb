// Uses both installed libraries: a failure frame reporting to the desktop reporter, whose
// log and error screen must show the failure.
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "ui/ErrorScreen.h"
#include "ui/QtErrorReporter.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir folder;
    auto reporter = std::make_shared<tvrx::QtErrorReporter>(folder.filePath("errors.log"));
    reporter->setEchoToStderr(false);
    tvrx::mdlMain::ErrorReporter = reporter;

    tvrx::Frame frame("clsDrug:GetData");
    frame([] { tvrx::fail(tvrx::err::Overflow); });

    QFile log(reporter->logPath());
    const bool logged = log.open(QIODevice::ReadOnly) && log.readAll().contains("clsDrug:GetData");
    const auto screen = reporter->makeScreen(reporter->lastReport());
    const bool shown = screen->summary() == QStringLiteral("Overflow (error 6 in clsDrug:GetData)");
    tvrx::mdlMain::resetSession();

    std::printf("find_package consumer: %s\n", logged && shown ? "ok" : "FAILED");
    return logged && shown ? 0 : 1;
}
