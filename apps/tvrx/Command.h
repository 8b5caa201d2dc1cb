#pragma once

#include "common/CommandLine.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace tvrx::cli {

// A sub-command of the host: "tvrx <name> ...". A name of two words ("log rx") is a
// sub-command of a group ("tvrx log"). declare adds its arguments and options to the
// command line; run carries the command out once the line has been read.
struct Command {
    QString name;
    QString synopsis;     // one line for "tvrx --help"
    QString description;  // the help under the usage line
    std::function<void(CommandLine& line)> declare;
    std::function<int(const CommandLine& line)> run;
    // Whether the command lays out text with these arguments (its own, after its name):
    // the host then runs as a graphical application on the off-screen platform.
    std::function<bool(const QStringList& arguments)> renders = {};
};

// Every sub-command the host knows, in the order "--help" lists them.
const std::vector<Command>& commands();

// Each sub-command file defines one of these.
Command claimBuildCommand();
Command claimExplainCommand();
Command encodeCommand();
Command exchangeCommand();
Command initCommand();
Command logCommand();
Command planCommand();
Command showCommand();
Command decodeCommand();
Command submitCommand();
Command priceCommand();
Command newCommand();
Command refillCommand();
Command screenCommand();
Command imageCommand();
Command voidCommand();
Command deleteCommand();
Command wantbookCommand();
Command editCommand();
Command generateCommand();
Command eligibilityCommand();

// Whether the arguments ask for a PDF file with "--pdf": only then must text be laid out.
bool namesPdfFile(const QStringList& arguments);

}  // namespace tvrx::cli
