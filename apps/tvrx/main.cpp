#include "Command.h"

#include <QCoreApplication>

#include <cstdio>

namespace tvrx::cli {

const std::vector<Command>& commands() {
    static const std::vector<Command> all{
        encodeCommand(), exchangeCommand(), initCommand(),   showCommand(),
        logCommand(),    planCommand(),     decodeCommand(),
    };
    return all;
}

int usageError(const Command& command, const QString& problem) {
    std::fprintf(stderr, "tvrx %s: %s\nusage: %s\n", qPrintable(command.name), qPrintable(problem),
                 qPrintable(command.usage));
    return kExitUsage;
}

namespace {

void printHelp(std::FILE* out) {
    std::fputs(
        "usage: tvrx <command> [arguments]\n\n"
        "TVRX1, the prescription processing library of Tessivar, from the command line.\n\n"
        "commands:\n",
        out);
    for (const auto& command : commands()) {
        std::fprintf(out, "  %-12s %s\n", qPrintable(command.name), qPrintable(command.synopsis));
    }
    std::fputs("\n'tvrx <command> --help' shows the usage of one command.\n", out);
}

int run(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        printHelp(stderr);
        return kExitUsage;
    }
    const QString& name = arguments.first();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help")) {
        printHelp(stdout);
        return kExitOk;
    }
    for (const auto& command : commands()) {
        if (command.name != name) continue;
        const QStringList rest = arguments.mid(1);
        if (rest.contains(QStringLiteral("--help"))) {
            std::printf("usage: %s\n", qPrintable(command.usage));
            return kExitOk;
        }
        return command.run(rest);
    }
    std::fprintf(stderr, "tvrx: unknown command '%s'\n\n", qPrintable(name));
    printHelp(stderr);
    return kExitUsage;
}

}  // namespace
}  // namespace tvrx::cli

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tvrx"));
    try {
        return tvrx::cli::run(QCoreApplication::arguments().mid(1));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tvrx: %s\n", failure.what());
    } catch (...) {
        std::fprintf(stderr, "tvrx: unexpected failure\n");
    }
    return tvrx::cli::kExitFailed;
}
