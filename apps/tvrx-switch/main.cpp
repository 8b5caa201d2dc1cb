// tvrx-switch: a stand-in for the pharmacy's transmission program and its payers. It watches
// the exchange directory and answers each claim request, as the payers of a payer file
// adjudicate it or with a prepared response chosen by rules.
#include "PayerSimulator.h"
#include "Rules.h"
#include "Switch.h"
#include "claims/ClaimExchange.h"
#include "claims/SignalBridge.h"
#include "common/CommandLine.h"
#include "common/ExchangeDirectory.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>
#include <optional>

namespace {

constexpr int kExitStopped = tvrx::cli::kExitOk;
constexpr int kExitCannotStart = tvrx::cli::kExitFailed;

const char* kDescription =
    "Answers each claim request (NNNNNNNN.clm) that appears in the exchange directory DIR\n"
    "with a response of the same stem (NNNNNNNN.RSP).\n"
    "With --payers FILE the payers of that JSON file adjudicate each claim and reversal\n"
    "(docs/SIMULATOR.md), keeping every claim in the history DB (an SQLite file, mode 0600;\n"
    "by default tvrx-switch-history.db in the user's data folder).\n"
    "With --rules FILE the answer is a prepared response chosen by the rules in FILE:\n"
    "    if TEXT then RESPONSE   the first line whose TEXT occurs in the request answers it\n"
    "    otherwise RESPONSE      the answer when no 'if' line does; the last line\n"
    "TEXT and the response files are in the readable notation (<FS>, <GS> ...); response\n"
    "files are named relative to FILE's folder (FILE '-' is standard input, its responses\n"
    "named relative to the working folder). One line is logged per request. SIGTERM or\n"
    "Ctrl-C stops the program.\n"
    "Exit codes: 0 stopped, 1 cannot start (directory, payers, history or rules), 2 usage.";

struct Options {
    QString directory;
    QString rules;
    QString payers;
    QString history;
    QDate day;
    unsigned mode = tvrx::ExchangeSettings().RequestMode;
};

const QString kHistoryName = QStringLiteral("tvrx-switch-history.db");

void declare(tvrx::cli::CommandLine& line) {
    using Presence = tvrx::cli::CommandLine::Presence;
    line.addOption(QStringLiteral("dir"), QStringLiteral("DIR"),
                   QStringLiteral("the exchange directory"), Presence::Required);
    line.addOption(QStringLiteral("payers"), QStringLiteral("FILE"),
                   QStringLiteral("the payers that adjudicate the claims"));
    line.addOption(QStringLiteral("history"), QStringLiteral("DB"),
                   QStringLiteral("the payers' history of claims"));
    line.addOption(QStringLiteral("date"), QStringLiteral("YYYYMMDD"),
                   QStringLiteral("the day the payers answer on (default today)"));
    line.addOption(QStringLiteral("rules"), QStringLiteral("FILE"),
                   QStringLiteral("the rules that choose prepared answers"));
    line.addOption(QStringLiteral("mode"), QStringLiteral("MODE"),
                   QStringLiteral("the octal mode of the responses (default 0660)"));
}

// The options read from the line; nothing, with the problem, when they do not go together.
std::optional<Options> optionsOf(const tvrx::cli::CommandLine& line, QString& problem) {
    Options options{line.value(QStringLiteral("dir")), line.value(QStringLiteral("rules")),
                    line.value(QStringLiteral("payers")), line.value(QStringLiteral("history")),
                    QDate()};
    if (options.rules.isEmpty() == options.payers.isEmpty()) {
        problem = QStringLiteral("give either --payers or --rules");
        return std::nullopt;
    }
    if (!options.history.isEmpty() && options.payers.isEmpty()) {
        problem = QStringLiteral("--history goes with --payers");
        return std::nullopt;
    }
    if (line.isSet(QStringLiteral("date"))) {
        options.day =
            QDate::fromString(line.value(QStringLiteral("date")), QStringLiteral("yyyyMMdd"));
        if (!options.day.isValid() || options.payers.isEmpty()) {
            problem = QStringLiteral("--date takes a day YYYYMMDD and goes with --payers");
            return std::nullopt;
        }
    }
    if (options.history.isEmpty()) {
        options.history = QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
                              .filePath(kHistoryName);
    }
    if (!line.isSet(QStringLiteral("mode"))) return options;
    bool modeOk = false;
    options.mode = line.value(QStringLiteral("mode")).toUInt(&modeOk, 8);
    if (!modeOk) {
        problem = QStringLiteral("--mode takes an octal mode such as 0660");
        return std::nullopt;
    }
    return options;
}

// How the requests are answered, and what the start line says about it; nothing, with the
// problem, when the payers or the rules cannot serve.
struct Answering {
    tvrx::sw::Switch::Answering answer;
    QString what;
};

std::optional<Answering> answeringOf(const Options& options, QString& problem) {
    if (!options.payers.isEmpty()) {
        std::shared_ptr<tvrx::sw::PayerSimulator> simulator =
            tvrx::sw::PayerSimulator::start(options.payers, options.history, problem);
        if (!simulator) return std::nullopt;
        simulator->setDay(options.day);
        return Answering{
            [simulator](const QByteArray& request) { return simulator->answer(request); },
            QStringLiteral("%1 plans, history %2").arg(simulator->plans()).arg(options.history)};
    }
    std::optional<tvrx::sw::Rules> rules = tvrx::sw::Rules::load(options.rules, problem);
    if (!rules) return std::nullopt;
    const QString what = QStringLiteral("%1 rules").arg(rules->size());
    return Answering{
        [rules = std::move(*rules)](const QByteArray& request) {
            const tvrx::sw::Rule& rule = rules.answerFor(QString::fromLatin1(request));
            return tvrx::sw::Switch::Reply{
                rule.response.toLatin1(),
                QStringLiteral("from %1, rule of line %2").arg(rule.file).arg(rule.line)};
        },
        what};
}

int run(const Options& options) {
    const QString unusable = tvrx::cli::exchangeDirectoryProblem(options.directory);
    if (!unusable.isEmpty()) {
        std::fprintf(stderr, "tvrx-switch: %s\n", qPrintable(unusable));
        return kExitCannotStart;
    }
    QString problem;
    std::optional<Answering> answering = answeringOf(options, problem);
    if (!answering) {
        std::fprintf(stderr, "tvrx-switch: %s\n", qPrintable(problem));
        return kExitCannotStart;
    }
    tvrx::sw::Switch exchange(options.directory, std::move(answering->answer), options.mode,
                              stdout);
    const tvrx::SignalBridge stop({SIGINT, SIGTERM}, [](int) { QCoreApplication::quit(); });
    const bool watching = exchange.start();
    std::printf("tvrx-switch: watching %s with %s%s\n", qPrintable(options.directory),
                qPrintable(answering->what), watching ? "" : " (polling each second)");
    std::fflush(stdout);
    QCoreApplication::exec();
    std::printf("tvrx-switch: stopped\n");
    return kExitStopped;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tvrx-switch"));
    tvrx::cli::CommandLine line(QStringLiteral("tvrx-switch"), QString::fromLatin1(kDescription));
    declare(line);
    if (const auto exitCode = line.read(QCoreApplication::arguments().mid(1))) return *exitCode;
    QString problem;
    const std::optional<Options> options = optionsOf(line, problem);
    if (!options) return line.usageError(problem);
    return run(*options);
}
