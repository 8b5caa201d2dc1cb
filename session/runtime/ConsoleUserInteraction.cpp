#include "session/runtime/ConsoleUserInteraction.h"

#include <QFile>
#include <QTextStream>

#include <unistd.h>

namespace tvrx {

namespace {

QString readLine(std::FILE* in) {
    QByteArray line;
    int c = 0;
    while ((c = std::fgetc(in)) != EOF && c != '\n') line.append(static_cast<char>(c));
    if (c == EOF && line.isEmpty()) return QString();
    return QString::fromLocal8Bit(line).trimmed();
}

std::optional<Answer> answerFromText(const QString& text, const QList<Answer>& allowed) {
    for (Answer answer : allowed) {
        const QString name = answerName(answer);
        if (text.compare(name, Qt::CaseInsensitive) == 0 ||
            text.compare(name.left(1), Qt::CaseInsensitive) == 0) {
            return answer;
        }
    }
    return std::nullopt;
}

}  // namespace

ConsoleUserInteraction::ConsoleUserInteraction(std::FILE* in, std::FILE* out)
    : in_(in), out_(out), interactive_(in != nullptr && isatty(fileno(in)) != 0) {}

bool ConsoleUserInteraction::addAnswersFromFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    addAnswersFromText(QString::fromUtf8(file.readAll()));
    return true;
}

void ConsoleUserInteraction::addAnswersFromText(QString text) {
    QTextStream stream(&text, QIODevice::ReadOnly);
    while (!stream.atEnd()) prepared_.push_back(stream.readLine());
}

void ConsoleUserInteraction::say(const QString& text) {
    std::fputs(qPrintable(text), out_);
    std::fputc('\n', out_);
    std::fflush(out_);
}

void ConsoleUserInteraction::sayNobody(const QString& answerGiven) {
    say(QStringLiteral("(nobody could answer: no terminal and no prepared answer; taken as %1)")
            .arg(answerGiven));
}

std::optional<QString> ConsoleUserInteraction::ask(const QString& prompt) {
    if (!prepared_.empty()) {
        QString answer = prepared_.front();
        prepared_.pop_front();
        say(prompt + QStringLiteral(" ") + answer);
        return answer;
    }
    if (!interactive_) {
        say(prompt);
        return std::nullopt;
    }
    std::fputs(qPrintable(prompt + QStringLiteral(" ")), out_);
    std::fflush(out_);
    return readLine(in_);
}

Answer ConsoleUserInteraction::MsgBox(const QString& text, Buttons buttons, Icon icon,
                                      int defaultButton, const QString& title) {
    const QList<Answer> allowed = buttonsOf(buttons);
    const Answer fallback = defaultAnswer(buttons, defaultButton);
    QStringList names;
    for (Answer answer : allowed) names.append(answerName(answer));
    const QString heading =
        icon == Icon::None ? title
                           : title + QStringLiteral(" (") + iconName(icon) + QStringLiteral(")");
    say(QStringLiteral("[%1] %2").arg(
        heading, QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"))));
    const QString prompt =
        QStringLiteral("%1 [%2]?").arg(names.join(QLatin1Char('/')), answerName(fallback));
    for (;;) {
        const auto typed = ask(prompt);
        if (!typed) {
            sayNobody(answerName(fallback));
            return fallback;
        }
        if (typed->isEmpty()) return fallback;
        if (const auto answer = answerFromText(*typed, allowed)) return *answer;
        if (!interactive_) return fallback;
    }
}

QString ConsoleUserInteraction::InputBox(const QString& prompt, const QString& title,
                                         const QString& defaultText) {
    say(QStringLiteral("[%1] %2").arg(title, prompt));
    const auto typed = ask(defaultText.isEmpty() ? QStringLiteral(">")
                                                 : QStringLiteral("[%1] >").arg(defaultText));
    if (!typed) {
        sayNobody(QStringLiteral("cancel"));
        return QString();
    }
    return typed->isEmpty() ? defaultText : *typed;
}

int ConsoleUserInteraction::Choose(const QString& captions, int buttonCount, int defaultButton,
                                   const QString& title, const QString& message, int /*option*/) {
    const QStringList names = choiceCaptions(captions);
    say(QStringLiteral("[%1] %2").arg(title, message));
    for (int i = 0; i < buttonCount && i < names.size(); ++i) {
        say(QStringLiteral("  %1) %2").arg(i + 1).arg(names.at(i)));
    }
    for (;;) {
        const auto typed = ask(QStringLiteral("Choice [%1]?").arg(defaultButton));
        if (!typed) {
            const int cancel = cancelChoice(captions, buttonCount);
            sayNobody(names.value(cancel - 1));
            return cancel;
        }
        if (typed->isEmpty()) return defaultButton;
        bool ok = false;
        const int number = typed->toInt(&ok);
        if (ok && number >= 1 && number <= buttonCount) return number;
        const int named = static_cast<int>(names.indexOf(*typed));
        if (named >= 0 && named < buttonCount) return named + 1;
        if (!interactive_) return defaultButton;
    }
}

std::optional<int> ConsoleUserInteraction::PickRow(const QString& title, const QStringList& columns,
                                                   const QList<QStringList>& rows) {
    say(QStringLiteral("[%1]").arg(title));
    say(QStringLiteral("      ") + columns.join(QStringLiteral(" | ")));
    for (int i = 0; i < rows.size(); ++i) {
        say(QStringLiteral("  %1) %2").arg(i + 1, 3).arg(rows.at(i).join(QStringLiteral(" | "))));
    }
    const auto typed = ask(QStringLiteral("Row number (empty for none)?"));
    if (!typed) {
        sayNobody(QStringLiteral("none"));
        return std::nullopt;
    }
    bool ok = false;
    const int number = typed->toInt(&ok);
    if (!ok || number < 1 || number > rows.size()) return std::nullopt;
    return number - 1;
}

int ConsoleUserInteraction::ShowForm(const QString& formName, const QString& caption) {
    say(QStringLiteral("[%1] %2").arg(formName, caption));
    return 0;
}

}  // namespace tvrx
