#include "Command.h"

#include "session/data/Connections.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <memory>

namespace tvrx::cli {

const std::vector<Command>& commands() {
    static const std::vector<Command> all{
        encodeCommand(),       exchangeCommand(), initCommand(),        showCommand(),
        logCommand(),          planCommand(),     decodeCommand(),      claimBuildCommand(),
        claimExplainCommand(), submitCommand(),   priceCommand(),       newCommand(),
        refillCommand(),       screenCommand(),   imageCommand(),       voidCommand(),
        deleteCommand(),       wantbookCommand(), eligibilityCommand(), editCommand(),
        generateCommand(),
    };
    return all;
}

namespace {

bool isHelp(const QString& argument) {
    return argument == QLatin1String("--help") || argument == QLatin1String("-h") ||
           argument == QLatin1String("help");
}

QStringList wordsOf(const Command& command) {
    return command.name.split(QLatin1Char(' '));
}

void printHelp(std::FILE* out) {
    std::fputs(
        "usage: tvrx <command> [arguments]\n\n"
        "TVRX1, the prescription processing library of Tessivar, from the command line.\n\n"
        "commands:\n",
        out);
    for (const auto& command : commands()) {
        std::fprintf(out, "  %-14s %s\n", qPrintable(command.name), qPrintable(command.synopsis));
    }
    std::fputs("\n'tvrx <command> --help' shows the usage of one command.\n", out);
}

// The commands whose name begins with this word and has a second one: "tvrx log rx".
std::vector<const Command*> groupOf(const QString& word) {
    std::vector<const Command*> group;
    for (const auto& command : commands()) {
        const QStringList words = wordsOf(command);
        if (words.size() > 1 && words.first() == word) group.push_back(&command);
    }
    return group;
}

// "tvrx log" without one of its sub-commands: they are listed, with their usage lines.
int groupUsage(const QString& word, const std::vector<const Command*>& group,
               const QString& given) {
    const bool help = isHelp(given);
    std::FILE* out = help ? stdout : stderr;
    QStringList names;
    for (const Command* command : group) names.append(wordsOf(*command).at(1));
    std::fprintf(out, "tvrx %s: expected one of: %s\n", qPrintable(word),
                 qPrintable(names.join(QStringLiteral(", "))));
    for (const Command* command : group) {
        CommandLine line(QStringLiteral("tvrx ") + command->name, command->description);
        if (command->declare) command->declare(line);
        std::fprintf(out, "%s\n", qPrintable(line.usageLine()));
    }
    return help ? kExitOk : kExitUsage;
}

int runCommand(const Command& command, const QStringList& arguments) {
    CommandLine line(QStringLiteral("tvrx ") + command.name, command.description);
    if (command.declare) command.declare(line);
    if (const auto exitCode = line.read(arguments)) return *exitCode;
    return command.run(line);
}

int run(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        printHelp(stderr);
        return kExitUsage;
    }
    if (isHelp(arguments.first())) {
        printHelp(stdout);
        return kExitOk;
    }
    for (const auto& command : commands()) {
        const QStringList words = wordsOf(command);
        if (arguments.mid(0, words.size()) == words) {
            return runCommand(command, arguments.mid(words.size()));
        }
    }
    const auto group = groupOf(arguments.first());
    if (!group.empty()) return groupUsage(arguments.first(), group, arguments.value(1));
    std::fprintf(stderr, "tvrx: unknown command '%s'\n\n", qPrintable(arguments.first()));
    printHelp(stderr);
    return kExitUsage;
}

// The library's box only says the lookup database is missing; the user also needs to know
// where it was looked for.
void sayWhereTheLookupWasSought() {
    const LibraryFile search = mdlMain::lastLookupSearch();
    if (search.searched.isEmpty() || !search.path.isEmpty()) return;
    std::fprintf(stderr, "tvrx: %s was not found in any of these folders:\n",
                 qPrintable(mdlMain::lookupFileName()));
    for (const QString& folder : search.searched)
        std::fprintf(stderr, "  %s\n", qPrintable(folder));
}

// Whether the command these arguments name lays out text.
bool rendersPages(const QStringList& arguments) {
    for (const auto& command : commands()) {
        const QStringList words = wordsOf(command);
        if (arguments.mid(0, words.size()) != words) continue;
        return command.renders && command.renders(arguments.mid(words.size()));
    }
    return false;
}

// Laying out text takes a graphical application, drawn off screen; the commands that lay
// out none run without one and need no display at all.
std::unique_ptr<QCoreApplication> applicationFor(int& argc, char** argv) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    if (!rendersPages(arguments)) return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

}  // namespace
}  // namespace tvrx::cli

int main(int argc, char** argv) {
    const auto app = tvrx::cli::applicationFor(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tvrx"));
    try {
        const int exitCode = tvrx::cli::run(QCoreApplication::arguments().mid(1));
        tvrx::cli::sayWhereTheLookupWasSought();
        return exitCode;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tvrx: %s\n", failure.what());
    } catch (...) {
        std::fprintf(stderr, "tvrx: unexpected failure\n");
    }
    return tvrx::cli::kExitFailed;
}
