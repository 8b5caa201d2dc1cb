#include "CommandLine.h"

#include <QCommandLineOption>

#include <algorithm>
#include <cstdio>

namespace tvrx::cli {

namespace {

const QString kHelp = QStringLiteral("help");
const QString kDatabase = QStringLiteral("db");
const QString kJson = QStringLiteral("json");

QString optionWords(const QString& name, const QString& valueName) {
    const QString words = QStringLiteral("--") + name;
    return valueName.isEmpty() ? words : words + QLatin1Char(' ') + valueName;
}

}  // namespace

CommandLine::CommandLine(QString invocation, QString description)
    : invocation_(std::move(invocation)), description_(std::move(description)) {
    // "-db" is "--db", not "-d -b"; and "-5" is reported as one unknown option.
    parser_.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser_.addOption(QCommandLineOption(QStringList{QStringLiteral("h"), kHelp}));
}

void CommandLine::addArgument(const QString& name, const QString& description) {
    declaredArguments_.append({name, {}, description, Presence::Required});
}

void CommandLine::addFurtherArguments(const QString& name, const QString& description) {
    furtherArguments_ = Declared{name, {}, description, Presence::Repeatable};
}

void CommandLine::addOption(const QString& name, const QString& valueName,
                            const QString& description, Presence presence) {
    parser_.addOption(QCommandLineOption(name, description, valueName));
    declaredOptions_.append({name, valueName, description, presence});
}

void CommandLine::addFlag(const QString& name, const QString& description) {
    parser_.addOption(QCommandLineOption(name, description));
    declaredOptions_.append({name, {}, description, Presence::Optional});
}

void CommandLine::addDatabaseOption(Presence presence) {
    addOption(kDatabase, QStringLiteral("URL"),
              QStringLiteral("the pharmacy database; without it, TVRX_DB"));
    hasDatabase_ = true;
    databaseRequired_ = presence == Presence::Required;
}

void CommandLine::addJsonOption() {
    addFlag(kJson, QStringLiteral("print one JSON object instead (docs/CLI.md)"));
    hasJson_ = true;
}

void CommandLine::stopOptionsAtFirstArgument() {
    parser_.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
}

std::optional<int> CommandLine::read(const QStringList& arguments) {
    const bool parsed = parser_.parse(QStringList{invocation_} + arguments);
    if (parser_.isSet(kHelp)) {
        std::fputs(qPrintable(helpText()), stdout);
        return kExitOk;
    }
    if (!parsed) return usageError(parser_.errorText());
    arguments_ = parser_.positionalArguments();
    if (hasDatabase_) {
        database_ = parser_.value(kDatabase);
        if (database_.isEmpty()) database_ = qEnvironmentVariable("TVRX_DB");
    }
    if (const auto problem = problemWithArguments()) return usageError(*problem);
    return std::nullopt;
}

std::optional<QString> CommandLine::problemWithArguments() const {
    if (arguments_.size() < declaredArguments_.size()) {
        return QStringLiteral("missing %1").arg(declaredArguments_.at(arguments_.size()).name);
    }
    if (!furtherArguments_ && arguments_.size() > declaredArguments_.size()) {
        return QStringLiteral("unexpected argument '%1'")
            .arg(arguments_.at(declaredArguments_.size()));
    }
    for (const Declared& option : declaredOptions_) {
        if (option.presence == Presence::Required && !parser_.isSet(option.name))
            return QStringLiteral("--%1 is required").arg(option.name);
    }
    if (hasDatabase_ && databaseRequired_ && database_.isEmpty()) {
        return QStringLiteral("no database: give --db URL or set TVRX_DB");
    }
    return std::nullopt;
}

std::optional<qint32> CommandLine::key(qsizetype index) const {
    bool isNumber = false;
    const qint32 number = arguments_.value(index).toInt(&isNumber);
    if (isNumber) return number;
    return std::nullopt;
}

int CommandLine::usageError(const QString& problem) const {
    std::fprintf(stderr, "%s: %s\n%s\n", qPrintable(invocation_), qPrintable(problem),
                 qPrintable(usageLine()));
    return kExitUsage;
}

int CommandLine::failed(const QString& problem) const {
    std::fprintf(stderr, "%s: %s\n", qPrintable(invocation_), qPrintable(problem));
    return kExitFailed;
}

QString CommandLine::usageLine() const {
    QStringList words{QStringLiteral("usage:"), invocation_};
    for (const Declared& argument : declaredArguments_) words.append(argument.name);
    if (furtherArguments_) words.append(QStringLiteral("[%1]...").arg(furtherArguments_->name));
    for (const Declared& option : declaredOptions_) {
        const QString given = optionWords(option.name, option.valueName);
        switch (option.presence) {
            case Presence::Required:
                words.append(given);
                break;
            case Presence::Optional:
                words.append(QStringLiteral("[%1]").arg(given));
                break;
            case Presence::Repeatable:
                words.append(QStringLiteral("[%1]...").arg(given));
                break;
        }
    }
    return words.join(QLatin1Char(' '));
}

// The usage line, the description, then one line for each argument and option.
QString CommandLine::helpText() const {
    QList<QPair<QString, QString>> rows;
    for (const Declared& argument : declaredArguments_)
        rows.append({argument.name, argument.description});
    if (furtherArguments_) rows.append({furtherArguments_->name, furtherArguments_->description});
    for (const Declared& option : declaredOptions_)
        rows.append({optionWords(option.name, option.valueName), option.description});
    rows.append({QStringLiteral("-h, --help"), QStringLiteral("show this help")});

    qsizetype width = 0;
    for (const auto& row : rows) width = std::max(width, row.first.size());
    QString text = usageLine() + QLatin1Char('\n');
    if (!description_.isEmpty()) text += description_ + QLatin1Char('\n');
    text += QLatin1Char('\n');
    for (const auto& [words, description] : rows)
        text += QStringLiteral("  %1  %2\n").arg(words, -static_cast<int>(width)).arg(description);
    return text;
}

}  // namespace tvrx::cli
