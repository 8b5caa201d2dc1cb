#include "Command.h"
#include "RecordSession.h"
#include "common/InputFile.h"

#include "records/clsINSURANCE.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

const QString kNabp = QStringLiteral("nabp");
const QString kBin = QStringLiteral("bin");
const QString kPcn = QStringLiteral("pcn");
const QString kAnswer = QStringLiteral("answer");
const QString kAnswers = QStringLiteral("answers");

void declare(CommandLine& line) {
    using Presence = CommandLine::Presence;
    line.addOption(kNabp, QStringLiteral("N"), QStringLiteral("the pharmacy's NABP number"),
                   Presence::Required);
    line.addOption(kBin, QStringLiteral("B"), QStringLiteral("the plan's BIN, with --pcn"));
    line.addOption(kPcn, QStringLiteral("P"), QStringLiteral("the plan's PCN, with --bin"));
    line.addDatabaseOption();
    line.addOption(kAnswer, QStringLiteral("TEXT"), QStringLiteral("the next answer to a question"),
                   Presence::Repeatable);
    line.addOption(kAnswers, QStringLiteral("FILE"),
                   QStringLiteral("answers, one a line; '-' reads them from standard input"));
}

// The answers of the command line, then those of the file; the terminal after them.
std::shared_ptr<ConsoleUserInteraction> consoleUser(const CommandLine& line, QString& problem) {
    auto console = std::make_shared<ConsoleUserInteraction>();
    for (const QString& answer : line.values(kAnswer)) console->addAnswer(answer);
    if (!line.isSet(kAnswers)) return console;
    const InputFile file = readInputFile(line.value(kAnswers));
    if (!file.bytes) {
        problem = file.error;
        return nullptr;
    }
    console->addAnswersFromText(QString::fromUtf8(*file.bytes));
    return console;
}

void printOutcome(qint32 key, bool foundExisting) {
    if (key == 0) {
        std::printf("No plan was created.\n");
        return;
    }
    clsINSURANCE plan;
    if (key <= 32767) {
        plan.InsID = static_cast<qint16>(key);
        plan.GetData();
    }
    std::printf("Plan %d%s: %s, %s (BIN %s, PCN %s, form %s)\n", key,
                foundExisting ? " (there already)" : "", qPrintable(plan.InsCode),
                qPrintable(plan.Name), qPrintable(plan.BIN), qPrintable(plan.ProcNumb),
                qPrintable(plan.Form));
}

int run(const CommandLine& line) {
    if (line.isSet(kBin) != line.isSet(kPcn)) {
        return line.usageError(QStringLiteral("--bin and --pcn go together"));
    }
    RecordSession session(line);
    QString problem;
    const auto console = consoleUser(line, problem);
    if (!console) return line.failed(problem);
    mdlMain::UserService = console;
    const auto connection = session.open();
    if (!connection) return kExitFailed;

    clsINSURANCE plan;
    plan.setConnection(connection);
    bool foundExisting = false;
    const QString nabp = line.value(kNabp);
    const qint32 key = line.isSet(kBin)
                           ? plan.InsertFromLookup(nabp, line.value(kBin), line.value(kPcn))
                           : plan.Insert(nabp, foundExisting);
    printOutcome(key, foundExisting);
    return session.printReports() == 0 ? kExitOk : kExitFailed;
}

}  // namespace

Command planCommand() {
    return {QStringLiteral("plan add"),
            QStringLiteral("create an insurance plan from the plan directory"),
            QStringLiteral(
                "Without --bin and --pcn the plan is made with questions: whether to search the\n"
                "plan directory, how, and which plan. With them it is made from the directory's\n"
                "plan of that BIN and PCN without questions (unless it was deleted). The answers\n"
                "of --answer come first, then those of --answers; then the terminal is asked."),
            declare, run};
}

}  // namespace tvrx::cli
