#include "Command.h"

#include "session/text/ClaimNotation.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <cstdio>
#include <optional>
#include <vector>

namespace tvrx::cli {
namespace {

enum class Parameter { Text, Amount, Width, Fill };

struct Arguments {
    QString text;
    QString fill;
    double amount = 0;
    qint16 width = 0;
};

// One encoding the command shows: its name, what it takes, and the lines it prints.
struct Encoding {
    QLatin1StringView name;
    std::vector<Parameter> parameters;
    QStringList (*run)(Arguments& arguments);
};

const std::vector<Encoding>& encodings() {
    static const std::vector<Encoding> all{
        {QLatin1StringView("overpunch"),
         {Parameter::Text},
         [](Arguments& a) {
             const double amount = mdlMain::OverPunch(a.text);
             return QStringList{conv::NumberText(amount),
                                QStringLiteral("text: ") + toNotation(a.text)};
         }},
        {QLatin1StringView("overpunch-return"),
         {Parameter::Amount},
         [](Arguments& a) { return QStringList{toNotation(mdlMain::OverPunchReturn(a.amount))}; }},
        {QLatin1StringView("phone"),
         {Parameter::Text},
         [](Arguments& a) { return QStringList{toNotation(mdlMain::PhoneString(a.text))}; }},
        {QLatin1StringView("zip"),
         {Parameter::Text},
         [](Arguments& a) { return QStringList{toNotation(mdlMain::ZipString(a.text))}; }},
        {QLatin1StringView("fixed"),
         {Parameter::Text, Parameter::Width, Parameter::Fill},
         [](Arguments& a) {
             return QStringList{toNotation(mdlMain::FixedLength(a.text, a.width, a.fill))};
         }},
    };
    return all;
}

const char* kDescription =
    "Shows the claim text encodings at work. ENCODING and its arguments:\n"
    "    overpunch TEXT\n"
    "    overpunch-return AMOUNT\n"
    "    phone TEXT\n"
    "    zip TEXT\n"
    "    fixed TEXT WIDTH FILL\n"
    "TEXT and FILL are claim texts in the readable notation (<FS>, <GS>, <xE1> ...; see\n"
    "docs/CLAIM-NOTATION.md), and results are printed in it. AMOUNT is a number in whole\n"
    "hundredths, WIDTH a whole number from -32768 to 32767. Arguments after ENCODING are\n"
    "taken as they are, so a negative number needs no '--'.";

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("ENCODING"), QStringLiteral("one of the encodings above"));
    line.addFurtherArguments(QStringLiteral("ARGUMENT"), QStringLiteral("what the encoding takes"));
    line.stopOptionsAtFirstArgument();
}

// Reads one argument into its place; the problem with it when it cannot be read.
std::optional<QString> readArgument(Parameter parameter, const QString& raw, Arguments& into) {
    bool ok = true;
    switch (parameter) {
        case Parameter::Text:
        case Parameter::Fill: {
            const NotationResult read = fromNotation(raw);
            if (!read) return QStringLiteral("'%1': %2").arg(raw, read.error);
            (parameter == Parameter::Text ? into.text : into.fill) = *read.text;
            return std::nullopt;
        }
        case Parameter::Amount:
            into.amount = raw.toDouble(&ok);
            if (!ok) return QStringLiteral("'%1' is not a number").arg(raw);
            return std::nullopt;
        case Parameter::Width:
            into.width = raw.toShort(&ok);
            if (!ok)
                return QStringLiteral("'%1' is not a whole number from -32768 to 32767").arg(raw);
            return std::nullopt;
    }
    return std::nullopt;
}

int runEncoding(const CommandLine& line, const Encoding& encoding) {
    const QStringList raw = line.arguments().mid(1);
    if (raw.size() != static_cast<qsizetype>(encoding.parameters.size())) {
        return line.usageError(QStringLiteral("%1 takes %2 argument(s)")
                                   .arg(encoding.name)
                                   .arg(encoding.parameters.size()));
    }
    Arguments arguments;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (auto problem = readArgument(encoding.parameters[i], raw[i], arguments)) {
            return line.usageError(*problem);
        }
    }
    // Failures inside the encodings go to the session's error report; the result is
    // printed all the same, as far as it was built.
    for (const QString& printed : encoding.run(arguments)) {
        std::printf("%s\n", printed.toUtf8().constData());
    }
    return kExitOk;
}

int run(const CommandLine& line) {
    const QString& name = line.arguments().first();
    for (const Encoding& encoding : encodings()) {
        if (name == encoding.name) return runEncoding(line, encoding);
    }
    return line.usageError(QStringLiteral("unknown encoding '%1'").arg(name));
}

}  // namespace

Command encodeCommand() {
    return {QStringLiteral("encode"), QStringLiteral("show the claim text encodings at work"),
            QString::fromLatin1(kDescription), declare, run};
}

}  // namespace tvrx::cli
