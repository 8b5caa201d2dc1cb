// tvrx-switch: a stand-in for the pharmacy's transmission program. It watches the exchange
// directory and answers each claim request with a prepared response chosen by rules.
#include "Rules.h"
#include "Switch.h"
#include "claims/ClaimExchange.h"
#include "claims/SignalBridge.h"
#include "common/CommandLine.h"
#include "common/ExchangeDirectory.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <optional>

namespace {

constexpr int kExitStopped = tvrx::cli::kExitOk;
constexpr int kExitCannotStart = tvrx::cli::kExitFailed;

const char* kDescription =
    "Answers each claim request (NNNNNNNN.clm) that appears in the exchange directory DIR\n"
    "with a response of the same stem (NNNNNNNN.RSP), chosen by the rules in FILE:\n"
    "    if TEXT then RESPONSE   the first line whose TEXT occurs in the request answers it\n"
    "    otherwise RESPONSE      the answer when no 'if' line does; the last line\n"
    "TEXT and the response files are in the readable notation (<FS>, <GS> ...); response\n"
    "files are named relative to FILE's folder (FILE '-' is standard input, its responses\n"
    "named relative to the working folder). One line is logged per request. SIGTERM or\n"
    "Ctrl-C stops the program.\n"
    "Exit codes: 0 stopped, 1 cannot start (directory or rules), 2 usage.";

struct Options {
    QString directory;
    QString rules;
    unsigned mode = tvrx::ExchangeSettings().RequestMode;
};

void declare(tvrx::cli::CommandLine& line) {
    using Presence = tvrx::cli::CommandLine::Presence;
    line.addOption(QStringLiteral("dir"), QStringLiteral("DIR"),
                   QStringLiteral("the exchange directory"), Presence::Required);
    line.addOption(QStringLiteral("rules"), QStringLiteral("FILE"),
                   QStringLiteral("the rules that choose the answers"), Presence::Required);
    line.addOption(QStringLiteral("mode"), QStringLiteral("MODE"),
                   QStringLiteral("the octal mode of the responses (default 0660)"));
}

// The options read from the line; nothing when --mode is no octal mode.
std::optional<Options> optionsOf(const tvrx::cli::CommandLine& line) {
    Options options{line.value(QStringLiteral("dir")), line.value(QStringLiteral("rules"))};
    if (!line.isSet(QStringLiteral("mode"))) return options;
    bool modeOk = false;
    options.mode = line.value(QStringLiteral("mode")).toUInt(&modeOk, 8);
    if (!modeOk) return std::nullopt;
    return options;
}

int run(const Options& options) {
    const QString unusable = tvrx::cli::exchangeDirectoryProblem(options.directory);
    if (!unusable.isEmpty()) {
        std::fprintf(stderr, "tvrx-switch: %s\n", qPrintable(unusable));
        return kExitCannotStart;
    }
    QString problem;
    std::optional<tvrx::sw::Rules> rules = tvrx::sw::Rules::load(options.rules, problem);
    if (!rules) {
        std::fprintf(stderr, "tvrx-switch: %s\n", qPrintable(problem));
        return kExitCannotStart;
    }
    const qsizetype ruleCount = rules->size();
    tvrx::sw::Switch exchange(options.directory, std::move(*rules), options.mode, stdout);
    const tvrx::SignalBridge stop({SIGINT, SIGTERM}, [](int) { QCoreApplication::quit(); });
    const bool watching = exchange.start();
    std::printf("tvrx-switch: watching %s with %lld rules%s\n", qPrintable(options.directory),
                static_cast<long long>(ruleCount), watching ? "" : " (polling each second)");
    std::fflush(stdout);
    QCoreApplication::exec();
    std::printf("tvrx-switch: stopped\n");
    return kExitStopped;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    tvrx::cli::CommandLine line(QStringLiteral("tvrx-switch"), QString::fromLatin1(kDescription));
    declare(line);
    if (const auto exitCode = line.read(QCoreApplication::arguments().mid(1))) return *exitCode;
    const std::optional<Options> options = optionsOf(line);
    if (!options) return line.usageError(QStringLiteral("--mode takes an octal mode such as 0660"));
    return run(*options);
}
