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

const char* kUsage =
    "tvrx encode overpunch TEXT\n"
    "       tvrx encode overpunch-return AMOUNT\n"
    "       tvrx encode phone TEXT\n"
    "       tvrx encode zip TEXT\n"
    "       tvrx encode fixed TEXT WIDTH FILL\n"
    "TEXT and FILL are claim texts in the readable notation (<FS>, <GS>, <xE1> ...; see\n"
    "docs/CLAIM-NOTATION.md), and results are printed in it. AMOUNT is a number in whole\n"
    "hundredths, WIDTH a whole number from -32768 to 32767.";

int usage(const QString& problem) {
    return usageError(encodeCommand(), problem);
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

int runEncoding(const Encoding& encoding, const QStringList& raw) {
    if (raw.size() != static_cast<qsizetype>(encoding.parameters.size())) {
        return usage(QStringLiteral("%1 takes %2 argument(s)")
                         .arg(encoding.name)
                         .arg(encoding.parameters.size()));
    }
    Arguments arguments;
    for (qsizetype i = 0; i < raw.size(); ++i) {
        if (auto problem = readArgument(encoding.parameters[i], raw[i], arguments)) {
            return usage(*problem);
        }
    }
    // Failures inside the encodings go to the session's error report; the result is
    // printed all the same, as far as it was built.
    for (const QString& line : encoding.run(arguments)) {
        std::printf("%s\n", line.toUtf8().constData());
    }
    return kExitOk;
}

int run(const QStringList& args) {
    if (args.isEmpty()) return usage(QStringLiteral("which encoding?"));
    for (const Encoding& encoding : encodings()) {
        if (args.first() == encoding.name) return runEncoding(encoding, args.mid(1));
    }
    return usage(QStringLiteral("unknown encoding '%1'").arg(args.first()));
}

}  // namespace

Command encodeCommand() {
    return {QStringLiteral("encode"), QStringLiteral("show the claim text encodings at work"),
            QString::fromLatin1(kUsage), run};
}

}  // namespace tvrx::cli
