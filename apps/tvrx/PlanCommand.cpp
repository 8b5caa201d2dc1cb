#include "Command.h"
#include "RecordSession.h"

#include "records/clsINSURANCE.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

struct PlanAddOptions {
    QString database;
    QString nabp;
    std::optional<QString> bin;
    std::optional<QString> pcn;
    QStringList answers;
    QString answerFile;
};

// The value of "--name VALUE" or "--name=VALUE" at args[i]; advances i past it.
std::optional<QString> optionValue(const QStringList& args, qsizetype& i, const QString& name,
                                   QString& problem) {
    const QString& arg = args[i];
    if (arg.startsWith(name + QLatin1Char('='))) return arg.mid(name.size() + 1);
    if (arg != name) return std::nullopt;
    if (i + 1 >= args.size()) {
        problem = QStringLiteral("%1 needs a value").arg(name);
        return std::nullopt;
    }
    return args[++i];
}

bool takeOption(PlanAddOptions& options, const QStringList& args, qsizetype& i, QString& problem) {
    const struct {
        const char* name;
        std::function<void(const QString&)> store;
    } known[] = {
        {"--nabp", [&](const QString& v) { options.nabp = v; }},
        {"--bin", [&](const QString& v) { options.bin = v; }},
        {"--pcn", [&](const QString& v) { options.pcn = v; }},
        {"--answer", [&](const QString& v) { options.answers.append(v); }},
        {"--answers", [&](const QString& v) { options.answerFile = v; }},
    };
    for (const auto& option : known) {
        if (const auto value = optionValue(args, i, QString::fromLatin1(option.name), problem)) {
            option.store(*value);
            return true;
        }
        if (!problem.isEmpty()) return false;
    }
    problem = QStringLiteral("unexpected argument '%1'").arg(args[i]);
    return false;
}

std::optional<PlanAddOptions> parseOptions(QStringList args, QString& problem) {
    if (args.isEmpty() || args.takeFirst() != QLatin1String("add")) {
        problem = QStringLiteral("expected 'add'");
        return std::nullopt;
    }
    PlanAddOptions options;
    const std::optional<QString> database = RecordSession::databaseOption(args, problem);
    if (!database) return std::nullopt;
    options.database = *database;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (!takeOption(options, args, i, problem)) return std::nullopt;
    }
    if (options.nabp.isEmpty()) problem = QStringLiteral("--nabp is required");
    if (options.bin.has_value() != options.pcn.has_value())
        problem = QStringLiteral("--bin and --pcn go together");
    if (!problem.isEmpty()) return std::nullopt;
    return options;
}

std::shared_ptr<ConsoleUserInteraction> consoleUser(const PlanAddOptions& options,
                                                    QString& problem) {
    auto console = std::make_shared<ConsoleUserInteraction>();
    for (const QString& answer : options.answers) console->addAnswer(answer);
    if (!options.answerFile.isEmpty() && !console->addAnswersFromFile(options.answerFile)) {
        problem = QStringLiteral("cannot read the answers in %1").arg(options.answerFile);
        return nullptr;
    }
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

int runPlanAdd(const PlanAddOptions& options) {
    RecordSession session(QStringLiteral("plan add"));
    QString problem;
    const auto console = consoleUser(options, problem);
    if (!console) {
        std::fprintf(stderr, "tvrx plan add: %s\n", qPrintable(problem));
        return kExitFailed;
    }
    mdlMain::UserService = console;
    const auto connection = session.open(options.database);
    if (!connection) return kExitFailed;

    clsINSURANCE plan;
    plan.setConnection(connection);
    bool foundExisting = false;
    const qint32 key = options.bin ? plan.InsertFromLookup(options.nabp, *options.bin, *options.pcn)
                                   : plan.Insert(options.nabp, foundExisting);
    printOutcome(key, foundExisting);
    return session.printReports() == 0 ? kExitOk : kExitFailed;
}

}  // namespace

Command planCommand() {
    Command command{
        QStringLiteral("plan"),
        QStringLiteral("create an insurance plan from the plan directory"),
        QStringLiteral(
            "tvrx plan add --nabp N [--bin B --pcn P] [--db URL] [--answer TEXT]... "
            "[--answers FILE]\n"
            "  Without --bin and --pcn the plan is made with questions: whether to search the\n"
            "  plan directory, how, and which plan. With them it is made from the directory's\n"
            "  plan of that BIN and PCN without questions (unless it was deleted).\n"
            "  --answer gives the next answer to a question (repeatable), --answers a file of\n"
            "  answers, one a line; then the terminal is asked.\n"
            "  Without --db the database is taken from TVRX_DB."),
        {}};
    command.run = [command](const QStringList& args) {
        QString problem;
        const std::optional<PlanAddOptions> options = parseOptions(args, problem);
        return options ? runPlanAdd(*options) : usageError(command, problem);
    };
    return command;
}

}  // namespace tvrx::cli
