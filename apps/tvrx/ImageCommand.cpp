#include "Command.h"
#include "RecordSession.h"
#include "ShowKinds.h"

#include "prescription/RXImageFolder.h"
#include "prescription/clsPrescription.h"
#include "session/data/DbConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Session.h"

#include <QDir>

#include <cstdio>

namespace tvrx::cli {

namespace {

const char* kDescription =
    "Prints the path of the scanned image of prescription RX-NUMBER. With --set FILE the\n"
    "file is first kept as the prescription's image, in place of an older one. Images are\n"
    "kept per prescription number in the folder of --images (by default the images folder\n"
    "of the data folder).";

const QString kSet = QStringLiteral("set");
const QString kImages = QStringLiteral("images");

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-NUMBER"), QStringLiteral("the prescription number"));
    line.addOption(kSet, QStringLiteral("FILE"), QStringLiteral("keep this file as the image"));
    line.addOption(kImages, QStringLiteral("DIR"), QStringLiteral("the folder of the images"));
    line.addDatabaseOption();
}

int run(const CommandLine& line) {
    const std::optional<qint32> number = line.key(0);
    if (!number) return line.usageError(notAKey(line.arguments().first()));
    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    if (!rowExists(*connection, QStringLiteral("RXINFO"), QStringLiteral("Number"), *number,
                   "tvrx:image")) {
        session.printReports();
        return line.failed(QStringLiteral("no prescription number %1").arg(*number));
    }
    const QString folder = line.isSet(kImages)
                               ? line.value(kImages)
                               : QDir(appConfig().DataFolder).filePath(QStringLiteral("images"));
    // The image to keep is the one of --set: no one is asked.
    const QString chosen = line.value(kSet);
    mdlMain::Scanners.set([folder, chosen] {
        return std::make_shared<RXImageFolder>(
            folder, [chosen](const QString&) { return QString(chosen); });
    });
    clsPrescription rx;
    rx.setConnection(connection);
    rx.Number = *number;
    if (line.isSet(kSet)) rx.SetRXImageFile();
    const QString image = rx.RXImageFile();
    if (session.printReports() > 0) return kExitFailed;
    if (image.isEmpty())
        return line.failed(QStringLiteral("no image of prescription %1").arg(*number));
    std::printf("%s\n", qPrintable(image));
    return kExitOk;
}

}  // namespace

Command imageCommand() {
    return {QStringLiteral("image"),
            QStringLiteral("show or set the scanned image of a prescription"),
            QString::fromLatin1(kDescription), declare, run};
}

}  // namespace tvrx::cli
