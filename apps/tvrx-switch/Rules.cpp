#include "Rules.h"

#include "common/InputFile.h"
#include "common/NotationFile.h"
#include "session/text/ClaimNotation.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace tvrx::sw {

namespace {

const QString kIf = QStringLiteral("if ");
const QString kThen = QStringLiteral(" then ");
const QString kOtherwise = QStringLiteral("otherwise ");

// The rule a line states, without its response; the problem with the line otherwise.
std::optional<Rule> parseLine(const QString& line, int number, QString& problem) {
    Rule rule;
    rule.line = number;
    const qsizetype then = line.lastIndexOf(kThen);
    if (line.startsWith(kOtherwise)) {
        rule.file = line.mid(kOtherwise.size()).trimmed();
    } else if (line.startsWith(kIf) && then >= kIf.size() - 1) {
        const qsizetype length = std::max<qsizetype>(0, then - kIf.size());
        const NotationResult text = fromNotation(line.mid(kIf.size(), length));
        rule.text = text.text.value_or(QString());
        rule.file = line.mid(then + kThen.size()).trimmed();
        problem = text ? QString() : text.error;
        if (text && rule.text.isEmpty()) problem = QStringLiteral("an 'if' line needs a text");
    } else {
        problem = QStringLiteral("expected 'if TEXT then FILE' or 'otherwise FILE'");
    }
    if (problem.isEmpty() && rule.file.isEmpty()) problem = QStringLiteral("no response file");
    if (!problem.isEmpty()) return std::nullopt;
    return rule;
}

}  // namespace

std::optional<Rules> Rules::load(const QString& path, QString& problem) {
    const cli::InputFile file = cli::readInputFile(path);
    if (!file.bytes) {
        problem = QStringLiteral("the rules: %1").arg(file.error);
        return std::nullopt;
    }
    // Rules read from standard input name their responses relative to the working folder.
    const QDir folder = QFileInfo(path).absoluteDir();
    const QStringList lines = QString::fromUtf8(*file.bytes).split(QLatin1Char('\n'));
    Rules rules;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) continue;
        const int number = static_cast<int>(i + 1);
        const QString where = QStringLiteral("%1 line %2: ").arg(path).arg(number);
        if (!rules.rules_.isEmpty() && rules.rules_.last().text.isEmpty()) {
            problem = where + QStringLiteral("nothing may follow the 'otherwise' line");
            return std::nullopt;
        }
        std::optional<Rule> rule = parseLine(line, number, problem);
        if (!rule) {
            problem.prepend(where);
            return std::nullopt;
        }
        const cli::NotationFile response = cli::readNotationFile(folder.filePath(rule->file));
        if (!response.text) {
            problem = where + response.error;
            return std::nullopt;
        }
        rule->response = *response.text;
        rules.rules_.append(*rule);
    }
    if (rules.rules_.isEmpty() || !rules.rules_.last().text.isEmpty()) {
        problem = path + QStringLiteral(": the last rule must be 'otherwise FILE'");
        return std::nullopt;
    }
    return rules;
}

const Rule& Rules::answerFor(const QString& request) const {
    for (const Rule& rule : rules_) {
        if (rule.text.isEmpty() || request.contains(rule.text)) return rule;
    }
    return rules_.last();
}

}  // namespace tvrx::sw
