// tvrx-switch: a stand-in for the pharmacy's transmission program. It watches the exchange
// directory and answers each claim request with a prepared response chosen by rules.
#include "Rules.h"
#include "Switch.h"
#include "claims/ClaimExchange.h"
#include "claims/SignalBridge.h"
#include "common/ExchangeDirectory.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <optional>

namespace {

constexpr int kExitStopped = 0;
constexpr int kExitCannotStart = 1;
constexpr int kExitUsage = 2;

const char* kUsage =
    "usage: tvrx-switch --dir DIR --rules FILE [--mode MODE]\n"
    "Answers each claim request (NNNNNNNN.clm) that appears in the exchange directory DIR\n"
    "with a response of the same stem (NNNNNNNN.RSP), chosen by the rules in FILE:\n"
    "    if TEXT then RESPONSE   the first line whose TEXT occurs in the request answers it\n"
    "    otherwise RESPONSE      the answer when no 'if' line does; the last line\n"
    "TEXT and the response files are in the readable notation (<FS>, <GS> ...); response\n"
    "files are named relative to FILE's folder. MODE is the octal mode of the responses\n"
    "(default 0660). One line is logged per request. SIGTERM or Ctrl-C stops the program.\n"
    "Exit codes: 0 stopped, 1 cannot start (directory or rules), 2 usage.";

struct Options {
    QString directory;
    QString rules;
    unsigned mode = tvrx::ExchangeSettings().RequestMode;
};

int usage(const QString& problem) {
    std::fprintf(stderr, "tvrx-switch: %s\n%s\n", qPrintable(problem), kUsage);
    return kExitUsage;
}

std::optional<Options> parseOptions(const QStringList& args, QString& problem) {
    Options options;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        const bool hasValue = i + 1 < args.size();
        bool modeOk = true;
        if (arg == QLatin1String("--dir") && hasValue) {
            options.directory = args[++i];
        } else if (arg == QLatin1String("--rules") && hasValue) {
            options.rules = args[++i];
        } else if (arg == QLatin1String("--mode") && hasValue) {
            options.mode = args[++i].toUInt(&modeOk, 8);
        } else {
            problem = QStringLiteral("unexpected argument '%1'").arg(arg);
            return std::nullopt;
        }
        if (!modeOk) {
            problem = QStringLiteral("--mode takes an octal mode such as 0660");
            return std::nullopt;
        }
    }
    if (options.directory.isEmpty()) problem = QStringLiteral("--dir is required");
    if (options.rules.isEmpty()) problem = QStringLiteral("--rules is required");
    if (!problem.isEmpty()) return std::nullopt;
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
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.contains(QStringLiteral("--help"))) {
        std::printf("%s\n", kUsage);
        return kExitStopped;
    }
    QString problem;
    const std::optional<Options> options = parseOptions(args, problem);
    if (!options) return usage(problem);
    return run(*options);
}
