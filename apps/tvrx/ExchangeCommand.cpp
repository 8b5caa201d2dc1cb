#include "Command.h"

#include "claims/Wrapper.h"
#include "common/ExchangeDirectory.h"
#include "common/NotationFile.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/ErrorReporter.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"

#include <QFile>

#include <cstdio>
#include <optional>

namespace tvrx::cli {
namespace {

const char* kDescription =
    "Sends the claim text in FILE through the exchange directory DIR and waits for the\n"
    "transmission program's response, which is printed. FILE holds the text in the readable\n"
    "notation (<STX>, <FS>, <GS> ...; see docs/CLAIM-NOTATION.md) without the end byte, which\n"
    "the exchange adds; line breaks in FILE are ignored, and '-' reads it from standard\n"
    "input. The response is printed in the same notation. Ctrl-C aborts the wait and\n"
    "withdraws the request if it was not collected.\n"
    "Exit codes: 0 answered, 1 failed (reported on stderr and in the error log),\n"
    "            2 usage, 3 aborted.";

const QString kDirectory = QStringLiteral("dir");

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("FILE"), QStringLiteral("the claim, '-' for standard input"));
    line.addOption(kDirectory, QStringLiteral("DIR"), QStringLiteral("the exchange directory"),
                   CommandLine::Presence::Required);
}

// Counts the failures of the exchange and hands each on to the usual error log.
class CountingReporter : public ErrorReporterBase {
public:
    explicit CountingReporter(std::shared_ptr<ErrorReporter> next) : next_(std::move(next)) {}

    void ReportError(const QString& description, const QString& number, const QString& source,
                     qint32 line, const QString& location, const QString& details, bool flag1,
                     bool flag2, bool flag3, bool flag4) override {
        ++reports;
        next_->ReportError(description, number, source, line, location, details, flag1, flag2,
                           flag3, flag4);
    }

    int reports = 0;

private:
    std::shared_ptr<ErrorReporter> next_;
};

QString readResponse(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(err::PathFileAccessError,
             QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
    }
    return QString::fromLatin1(file.readAll());
}

int run(const CommandLine& line) {
    const QString directory = line.value(kDirectory);
    // Waiting for an answer to a request that could not be written would only end in ^C.
    const QString unusable = exchangeDirectoryProblem(directory);
    if (!unusable.isEmpty()) return line.failed(unusable);
    const NotationFile claim = readNotationFile(line.arguments().first());
    if (!claim.text) return line.failed(claim.error);
    auto reporter = std::make_shared<CountingReporter>(mdlMain::createReporter());
    mdlMain::ErrorReporter = reporter;

    std::optional<QString> response;
    Wrapper wrapper;
    const bool answered = wrapper.ExchangeClaimFile(
        directory, *claim.text,
        [&response](const QString& path) { response = readResponse(path); });
    if (response) std::printf("%s\n", toNotation(*response).toUtf8().constData());
    if (reporter->reports > 0) return kExitFailed;
    return answered ? kExitOk : kExitAborted;
}

}  // namespace

Command exchangeCommand() {
    return {QStringLiteral("exchange"),
            QStringLiteral("send a claim text to the transmission program and print its answer"),
            QString::fromLatin1(kDescription), declare, run};
}

}  // namespace tvrx::cli
