#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tvrx {

enum class Buttons {
    OKOnly = 0,
    OKCancel = 1,
    AbortRetryIgnore = 2,
    YesNoCancel = 3,
    YesNo = 4,
    RetryCancel = 5
};
enum class Icon { None = 0, Critical = 16, Question = 32, Exclamation = 48, Information = 64 };
enum class Answer { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

// The buttons of a set, left to right.
QList<Answer> buttonsOf(Buttons buttons);
// The button a box answers with when nobody presses one: its default button.
Answer defaultAnswer(Buttons buttons, int defaultButton);
QString answerName(Answer answer);
QString iconName(Icon icon);
// Captions of a choice dialog ("&Main,&Other") without their access-key markers.
QStringList choiceCaptions(const QString& captions);
// The position a choice dialog answers with when nobody is there: the button that reads
// "cancel", or else the last one.
int cancelChoice(const QString& captions, int buttonCount);

// Every question the logic asks a person goes through this service. Each call blocks
// until it has an answer.
class UserInteraction {
public:
    virtual ~UserInteraction() = default;

    // defaultButton is 1-based within the button set.
    virtual Answer MsgBox(const QString& text, Buttons buttons, Icon icon, int defaultButton,
                          const QString& title) = 0;
    // Cancel gives an empty text.
    virtual QString InputBox(const QString& prompt, const QString& title,
                             const QString& defaultText) = 0;
    // captions: one comma-separated text with "&" access keys. Returns the 1-based
    // position of the button pressed.
    virtual int Choose(const QString& captions, int buttonCount, int defaultButton,
                       const QString& title, const QString& message, int option) = 0;
    // Returns the 0-based index of the chosen row, or none.
    virtual std::optional<int> PickRow(const QString& title, const QStringList& columns,
                                       const QList<QStringList>& rows) = 0;
    // Shows a modal form by name and returns its result code.
    virtual int ShowForm(const QString& formName, const QString& caption) = 0;
};

}  // namespace tvrx
