// Uses both installed libraries as a host would: a record class whose read fails over an
// empty SQLite database reports to the desktop reporter, whose log and error screen must
// show the failure.
#include "records/clsDoc.h"
#include "session/data/DbConnection.h"
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
    auto connection = std::make_shared<tvrx::DbConnection>(folder.filePath("empty.db"));
    connection->Open();

    tvrx::clsDoc doc;
    doc.setConnection(connection);
    doc.MDID = 1;
    doc.GetData();

    QFile log(reporter->logPath());
    const QByteArray logged = log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    const bool inLog = logged.contains("clsDoc:GetData") && logged.contains("\"statement\"");
    const auto screen = reporter->makeScreen(reporter->lastReport());
    const bool shown = screen->summary().contains(QStringLiteral(" in clsDoc:GetData)"));
    tvrx::mdlMain::resetSession();

    std::printf("find_package consumer: %s\n", inLog && shown ? "ok" : "FAILED");
    return inLog && shown ? 0 : 1;
}
