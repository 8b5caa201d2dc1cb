#include "Command.h"
#include "JsonOutput.h"
#include "ResponseOutput.h"
#include "common/InputFile.h"

#include "responses/ResponseJson.h"
#include "responses/ResponseLayout.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"
#include "session/text/Encodings.h"

#include <cstdio>
#include <optional>

namespace tvrx::cli {
namespace {

const char* kDescription =
    "Decodes one payer response as clsClaimResponse.BuildResponse receives it and prints\n"
    "what it decoded, the message boxes it showed and the failures it reported. FILE holds\n"
    "the text in the readable notation (docs/CLAIM-NOTATION.md), '-' reads it from standard\n"
    "input; lines starting with '#' are comments and line ends are not part of the text.\n"
    "  A claim answer is one group of the response file behind the six characters the\n"
    "  response file reader puts in front of it. A FILE that holds only the group (it\n"
    "  starts with <GS>) gets them from --form (32 when not given).\n"
    "  A reversal answer is the whole response file; --reversal checks that FILE is one.\n"
    "  --form on a whole text checks its version.\n"
    "The reject descriptions come from the lookup database in the library's folder.";

const QString kForm = QStringLiteral("form");
const QString kReversal = QStringLiteral("reversal");
const QStringList kForms{QStringLiteral("32"), QStringLiteral("40"), QStringLiteral("51")};

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("FILE"),
                     QStringLiteral("the response, '-' for standard input"));
    line.addOption(kForm, QStringLiteral("32|40|51"),
                   QStringLiteral("the version of a bare claim group, or the one a whole text "
                                  "must have"));
    line.addFlag(kReversal, QStringLiteral("the text must be a reversal answer"));
    line.addJsonOption();
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
std::optional<QString> responseText(const CommandLine& line, QString& problem) {
    const QString& path = line.arguments().first();
    const InputFile file = readInputFile(path);
    const NotationResult read = file.bytes ? readResponseText(*file.bytes) : NotationResult{};
    if (!read) {
        problem =
            file.bytes ? QStringLiteral("%1: %2").arg(inputName(path), read.error) : file.error;
        return std::nullopt;
    }
    const std::optional<QString> form =
        line.isSet(kForm) ? std::optional(line.value(kForm)) : std::nullopt;
    const bool reversal = line.isSet(kReversal);
    QString text = *read.text;
    if (text.startsWith(QChar(mdlMain::kGroupSeparator))) {
        if (reversal) problem = QStringLiteral("a reversal answer is the whole file");
        return readerHeader(form.value_or(QStringLiteral("32"))) + text;
    }
    if (form && text.mid(response::kVersion.position - 1, 2) != *form) {
        problem = QStringLiteral("the text is not of form %1").arg(*form);
    }
    if (reversal && !isReversalAnswer(text)) {
        problem = QStringLiteral("the text is not a reversal answer");
    }
    return text;
}

int run(const CommandLine& line) {
    if (line.isSet(kForm) && !kForms.contains(line.value(kForm))) {
        return line.usageError(QStringLiteral("--form takes 32, 40 or 51"));
    }
    QString problem;
    const std::optional<QString> text = responseText(line, problem);
    if (!problem.isEmpty()) return line.failed(problem);

    clsClaimResponse response;
    response.Claim = *text;
    const DecodedResponse decoded = decodeResponse(response);

    if (line.json()) {
        printJson(decodedJson(response, decoded));
    } else {
        for (const QString& printed : responseLines(response, decoded))
            std::printf("%s\n", printed.toUtf8().constData());
    }
    return decoded.result ? kExitOk : kExitFailed;
}

}  // namespace

Command decodeCommand() {
    return {QStringLiteral("decode"), QStringLiteral("decode one payer response"),
            QString::fromLatin1(kDescription), declare, run};
}

}  // namespace tvrx::cli
