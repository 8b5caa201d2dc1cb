#include "Command.h"
#include "ResponseOutput.h"

#include "responses/ResponseJson.h"
#include "responses/ResponseLayout.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"
#include "session/text/Encodings.h"

#include <QJsonDocument>

#include <cstdio>
#include <optional>

namespace tvrx::cli {
namespace {

const char* kUsage =
    "tvrx decode FILE [--form 32|40|51] [--reversal] [--json]\n"
    "Decodes one payer response as clsClaimResponse.BuildResponse receives it and prints\n"
    "what it decoded, the message boxes it showed and the failures it reported. FILE holds\n"
    "the text in the readable notation (docs/CLAIM-NOTATION.md); lines starting with '#'\n"
    "are comments and line ends are not part of the text.\n"
    "  A claim answer is one group of the response file behind the six characters the\n"
    "  response file reader puts in front of it. A FILE that holds only the group (it\n"
    "  starts with <GS>) gets them from --form (32 when not given).\n"
    "  A reversal answer is the whole response file; --reversal checks that FILE is one.\n"
    "  --form on a whole text checks its version.\n"
    "  --json prints one JSON object instead (docs/DECODE.md).\n"
    "The reject descriptions come from the lookup database in the library's folder.";

struct Options {
    QString file;
    std::optional<QString> form;
    bool reversal = false;
    bool json = false;
};

const QStringList kForms{QStringLiteral("32"), QStringLiteral("40"), QStringLiteral("51")};

int usage(const QString& problem) {
    return usageError(decodeCommand(), problem);
}

int failed(const QString& problem) {
    std::fprintf(stderr, "tvrx decode: %s\n", qPrintable(problem));
    return kExitFailed;
}

std::optional<Options> parse(const QStringList& args, QString& problem) {
    Options options;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--json")) {
            options.json = true;
        } else if (arg == QLatin1String("--reversal")) {
            options.reversal = true;
        } else if (arg == QLatin1String("--form")) {
            if (i + 1 == args.size() || !kForms.contains(args[i + 1])) {
                problem = QStringLiteral("--form takes 32, 40 or 51");
                return std::nullopt;
            }
            options.form = args[++i];
        } else if (!arg.startsWith(QLatin1String("--")) && options.file.isEmpty()) {
            options.file = arg;
        } else {
            problem = QStringLiteral("unexpected argument '%1'").arg(arg);
            return std::nullopt;
        }
    }
    if (options.file.isEmpty()) problem = QStringLiteral("which file?");
    if (!problem.isEmpty()) return std::nullopt;
    return options;
}

// The six characters the response file reader builds in front of a claim group: the start
// byte, the version, and for an accepted transmission "000", or in format "51" the
// claim's transaction code and "0".
QString readerHeader(const QString& form) {
    const QString start{QChar(response::kStartByte)};
    if (form == response::kVersion51) return start + form + QStringLiteral("B1") + u'0';
    return start + form + QStringLiteral("000");
}

bool isReversalAnswer(const QString& text) {
    const QString code = text.mid(response::kTransactionCode.position - 1, 2);
    return code == response::kReversalCodeFixed || code == response::kReversalCode51;
}

// The text BuildResponse receives, or what keeps FILE from being one.
std::optional<QString> responseText(const Options& options, QString& problem) {
    const NotationResult read = readResponseFile(options.file);
    if (!read) {
        problem = QStringLiteral("%1: %2").arg(options.file, read.error);
        return std::nullopt;
    }
    QString text = *read.text;
    if (text.startsWith(QChar(mdlMain::kGroupSeparator))) {
        if (options.reversal) problem = QStringLiteral("a reversal answer is the whole file");
        return readerHeader(options.form.value_or(QStringLiteral("32"))) + text;
    }
    if (options.form && text.mid(response::kVersion.position - 1, 2) != *options.form) {
        problem = QStringLiteral("the text is not of form %1").arg(*options.form);
    }
    if (options.reversal && !isReversalAnswer(text)) {
        problem = QStringLiteral("the text is not a reversal answer");
    }
    return text;
}

int run(const QStringList& args) {
    QString problem;
    const std::optional<Options> options = parse(args, problem);
    if (!options) return usage(problem);
    const std::optional<QString> text = responseText(*options, problem);
    if (!problem.isEmpty()) return failed(problem);

    clsClaimResponse response;
    response.Claim = *text;
    const DecodedResponse decoded = decodeResponse(response);

    if (options->json) {
        std::fputs(QJsonDocument(decodedJson(response, decoded))
                       .toJson(QJsonDocument::Indented)
                       .constData(),
                   stdout);
    } else {
        for (const QString& line : responseLines(response, decoded))
            std::printf("%s\n", line.toUtf8().constData());
    }
    return decoded.result ? kExitOk : kExitFailed;
}

}  // namespace

Command decodeCommand() {
    return {QStringLiteral("decode"), QStringLiteral("decode one payer response"),
            QString::fromLatin1(kUsage), run};
}

}  // namespace tvrx::cli
