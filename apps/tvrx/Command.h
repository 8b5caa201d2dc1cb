#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace tvrx::cli {

// Exit codes of the command-line host.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

// A sub-command of the host: "tvrx <name> ...".
struct Command {
    QString name;
    QString synopsis;  // one line for "tvrx --help"
    QString usage;     // the full usage text of the sub-command
    std::function<int(const QStringList& args)> run;
};

// Every sub-command the host knows, in the order "--help" lists them.
const std::vector<Command>& commands();

// Prints "usage: ..." for the command on stderr and returns kExitUsage.
int usageError(const Command& command, const QString& problem);

// Each sub-command file defines one of these.
Command encodeCommand();
Command exchangeCommand();
Command initCommand();
Command logCommand();
Command planCommand();
Command showCommand();
Command decodeCommand();

}  // namespace tvrx::cli
