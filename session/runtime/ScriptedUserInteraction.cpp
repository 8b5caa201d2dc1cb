#include "session/runtime/ScriptedUserInteraction.h"

#include <QtGlobal>

namespace tvrx {

namespace {

constexpr int kNoRow = -1;

}  // namespace

QString kindName(ScriptedUserInteraction::Kind kind) {
    switch (kind) {
        case ScriptedUserInteraction::Kind::MsgBox:
            return QStringLiteral("MsgBox");
        case ScriptedUserInteraction::Kind::InputBox:
            return QStringLiteral("InputBox");
        case ScriptedUserInteraction::Kind::Choose:
            return QStringLiteral("Choose");
        case ScriptedUserInteraction::Kind::PickRow:
            return QStringLiteral("PickRow");
        case ScriptedUserInteraction::Kind::ShowForm:
            return QStringLiteral("ShowForm");
    }
    return {};
}

QString ScriptedUserInteraction::Call::title() const {
    switch (kind) {
        case Kind::MsgBox:
            return args.value(4);
        case Kind::InputBox:
            return args.value(1);
        case Kind::Choose:
            return args.value(3);
        case Kind::PickRow:
            return args.value(0);
        case Kind::ShowForm:
            return args.value(1);
    }
    return {};
}

ScriptedUserInteraction::ScriptedUserInteraction()
    : onUnexpected_([](const QString& message) { qFatal("%s", qPrintable(message)); }) {}

void ScriptedUserInteraction::answerMsgBox(Answer answer) {
    answers_.push_back({Kind::MsgBox, static_cast<int>(answer)});
}

void ScriptedUserInteraction::answerInputBox(const QString& text) {
    answers_.push_back({Kind::InputBox, text});
}

void ScriptedUserInteraction::answerChoose(int position) {
    answers_.push_back({Kind::Choose, position});
}

void ScriptedUserInteraction::answerPickRow(std::optional<int> row) {
    answers_.push_back({Kind::PickRow, row.value_or(kNoRow)});
}

void ScriptedUserInteraction::answerShowForm(int result) {
    answers_.push_back({Kind::ShowForm, result});
}

void ScriptedUserInteraction::setUnexpectedCallHandler(
    std::function<void(const QString&)> handler) {
    onUnexpected_ = std::move(handler);
}

QList<ScriptedUserInteraction::Call> ScriptedUserInteraction::callsOf(Kind kind) const {
    QList<Call> result;
    for (const auto& call : calls_) {
        if (call.kind == kind) result.append(call);
    }
    return result;
}

void ScriptedUserInteraction::clear() {
    answers_.clear();
    calls_.clear();
}

std::optional<QVariant> ScriptedUserInteraction::take(Kind kind, const Call& call) {
    calls_.append(call);
    if (permissive_) return std::nullopt;
    if (answers_.empty() || answers_.front().kind != kind) {
        const QString expected =
            answers_.empty() ? QStringLiteral("nothing") : kindName(answers_.front().kind);
        onUnexpected_(QStringLiteral("Unexpected %1 (%2) while %3 was expected")
                          .arg(kindName(kind), call.args.join(QStringLiteral(" | ")), expected));
        return std::nullopt;
    }
    QVariant value = answers_.front().value;
    answers_.pop_front();
    return value;
}

Answer ScriptedUserInteraction::MsgBox(const QString& text, Buttons buttons, Icon icon,
                                       int defaultButton, const QString& title) {
    const Call call{Kind::MsgBox,
                    {text, QString::number(static_cast<int>(buttons)), iconName(icon),
                     QString::number(defaultButton), title}};
    const auto answer = take(Kind::MsgBox, call);
    return answer ? static_cast<Answer>(answer->toInt()) : defaultAnswer(buttons, defaultButton);
}

QString ScriptedUserInteraction::InputBox(const QString& prompt, const QString& title,
                                          const QString& defaultText) {
    const auto answer = take(Kind::InputBox, {Kind::InputBox, {prompt, title, defaultText}});
    return answer ? answer->toString() : defaultText;
}

int ScriptedUserInteraction::Choose(const QString& captions, int buttonCount, int defaultButton,
                                    const QString& title, const QString& message, int option) {
    const Call call{Kind::Choose,
                    {captions, QString::number(buttonCount), QString::number(defaultButton), title,
                     message, QString::number(option)}};
    const auto answer = take(Kind::Choose, call);
    return answer ? answer->toInt() : defaultButton;
}

std::optional<int> ScriptedUserInteraction::PickRow(const QString& title,
                                                    const QStringList& columns,
                                                    const QList<QStringList>& rows) {
    QStringList args{title, columns.join(QLatin1Char(','))};
    for (const auto& row : rows) args.append(row.join(QLatin1Char(',')));
    const auto answer = take(Kind::PickRow, {Kind::PickRow, args});
    if (!answer || answer->toInt() == kNoRow) return std::nullopt;
    return answer->toInt();
}

int ScriptedUserInteraction::ShowForm(const QString& formName, const QString& caption) {
    const auto answer = take(Kind::ShowForm, {Kind::ShowForm, {formName, caption}});
    return answer ? answer->toInt() : 0;
}

}  // namespace tvrx
