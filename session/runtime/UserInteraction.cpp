#include "session/runtime/UserInteraction.h"

#include <array>

namespace tvrx {

namespace {

struct ButtonSet {
    Buttons buttons;
    QList<Answer> answers;
};

const std::array<ButtonSet, 6>& buttonSets() {
    static const std::array<ButtonSet, 6> sets{{
        {Buttons::OKOnly, {Answer::OK}},
        {Buttons::OKCancel, {Answer::OK, Answer::Cancel}},
        {Buttons::AbortRetryIgnore, {Answer::Abort, Answer::Retry, Answer::Ignore}},
        {Buttons::YesNoCancel, {Answer::Yes, Answer::No, Answer::Cancel}},
        {Buttons::YesNo, {Answer::Yes, Answer::No}},
        {Buttons::RetryCancel, {Answer::Retry, Answer::Cancel}},
    }};
    return sets;
}

}  // namespace

QList<Answer> buttonsOf(Buttons buttons) {
    for (const auto& set : buttonSets()) {
        if (set.buttons == buttons) return set.answers;
    }
    return {Answer::OK};
}

Answer defaultAnswer(Buttons buttons, int defaultButton) {
    const QList<Answer> answers = buttonsOf(buttons);
    const int index = defaultButton - 1;
    return index >= 0 && index < answers.size() ? answers.at(index) : answers.first();
}

QString answerName(Answer answer) {
    switch (answer) {
        case Answer::OK:
            return QStringLiteral("OK");
        case Answer::Cancel:
            return QStringLiteral("Cancel");
        case Answer::Abort:
            return QStringLiteral("Abort");
        case Answer::Retry:
            return QStringLiteral("Retry");
        case Answer::Ignore:
            return QStringLiteral("Ignore");
        case Answer::Yes:
            return QStringLiteral("Yes");
        case Answer::No:
            return QStringLiteral("No");
    }
    return {};
}

QString iconName(Icon icon) {
    switch (icon) {
        case Icon::None:
            return QString();
        case Icon::Critical:
            return QStringLiteral("critical");
        case Icon::Question:
            return QStringLiteral("question");
        case Icon::Exclamation:
            return QStringLiteral("warning");
        case Icon::Information:
            return QStringLiteral("information");
    }
    return {};
}

QStringList choiceCaptions(const QString& captions) {
    QStringList result = captions.split(QLatin1Char(','));
    for (QString& caption : result) caption = caption.remove(QLatin1Char('&')).trimmed();
    return result;
}

int cancelChoice(const QString& captions, int buttonCount) {
    const QStringList names = choiceCaptions(captions);
    for (int i = 0; i < names.size() && i < buttonCount; ++i) {
        if (names.at(i).compare(QStringLiteral("cancel"), Qt::CaseInsensitive) == 0) return i + 1;
    }
    return buttonCount > 0 ? buttonCount : 1;
}

}  // namespace tvrx
