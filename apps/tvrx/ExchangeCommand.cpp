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

constexpr int kExitAborted = 3;

const char* kUsage =
    "tvrx exchange --dir DIR FILE\n"
    "Sends the claim text in FILE through the exchange directory DIR and waits for the\n"
    "transmission program's response, which is printed. FILE holds the text in the readable\n"
    "notation (<STX>, <FS>, <GS> ...; see docs/CLAIM-NOTATION.md) without the end byte, which\n"
    "the exchange adds; line breaks in FILE are ignored. The response is printed in the same\n"
    "notation. Ctrl-C aborts the wait and withdraws the request if it was not collected.\n"
    "Exit codes: 0 answered, 1 failed (reported on stderr and in the error log),\n"
    "            2 usage, 3 aborted.";

struct ExchangeOptions {
    QString directory;
    QString file;
};

int usage(const QString& problem) {
    return usageError(exchangeCommand(), problem);
}

std::optional<ExchangeOptions> parseOptions(const QStringList& args, QString& problem) {
    ExchangeOptions options;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--dir") && i + 1 < args.size()) {
            options.directory = args[++i];
        } else if (arg.startsWith(QLatin1String("--dir="))) {
            options.directory = arg.mid(6);
        } else if (arg.startsWith(QLatin1String("--")) || !options.file.isEmpty()) {
            problem = arg == QLatin1String("--dir")
                          ? QStringLiteral("--dir needs a directory")
                          : QStringLiteral("unexpected argument '%1'").arg(arg);
            return std::nullopt;
        } else {
            options.file = arg;
        }
    }
    if (options.directory.isEmpty()) problem = QStringLiteral("--dir is required");
    if (options.file.isEmpty()) problem = QStringLiteral("which claim file?");
    if (!problem.isEmpty()) return std::nullopt;
    return options;
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

int runExchange(const ExchangeOptions& options) {
    // Waiting for an answer to a request that could not be written would only end in ^C.
    const QString unusable = exchangeDirectoryProblem(options.directory);
    if (!unusable.isEmpty()) {
        std::fprintf(stderr, "tvrx exchange: %s\n", qPrintable(unusable));
        return kExitFailed;
    }
    const NotationFile claim = readNotationFile(options.file);
    if (!claim.text) {
        std::fprintf(stderr, "tvrx exchange: %s\n", qPrintable(claim.error));
        return kExitFailed;
    }
    auto reporter = std::make_shared<CountingReporter>(mdlMain::createReporter());
    mdlMain::ErrorReporter = reporter;

    std::optional<QString> response;
    Wrapper wrapper;
    const bool answered = wrapper.ExchangeClaimFile(
        options.directory, *claim.text,
        [&response](const QString& path) { response = readResponse(path); });
    if (response) std::printf("%s\n", toNotation(*response).toUtf8().constData());
    if (reporter->reports > 0) return kExitFailed;
    return answered ? kExitOk : kExitAborted;
}

int run(const QStringList& args) {
    QString problem;
    const std::optional<ExchangeOptions> options = parseOptions(args, problem);
    if (!options) return usage(problem);
    return runExchange(*options);
}

}  // namespace

Command exchangeCommand() {
    return {QStringLiteral("exchange"),
            QStringLiteral("send a claim text to the transmission program and print its answer"),
            QString::fromLatin1(kUsage), run};
}

}  // namespace tvrx::cli
