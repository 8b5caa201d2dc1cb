#pragma once

#include "session/runtime/UserInteraction.h"

#include <QStringList>

#include <cstdio>
#include <deque>

namespace tvrx {

// Asks on the terminal. Prepared answers (from the command line or a file) are used
// first, in order. With no terminal and nothing prepared, the question is printed with a
// note that nobody could answer, and the call answers as a cancel would, so that a run
// nobody attends never sends a claim.
class ConsoleUserInteraction : public UserInteraction {
public:
    ConsoleUserInteraction(std::FILE* in = stdin, std::FILE* out = stderr);

    void addAnswer(const QString& answer) { prepared_.push_back(answer); }
    // One answer per line; returns false when the file cannot be read.
    bool addAnswersFromFile(const QString& path);
    // One answer per line of the text.
    void addAnswersFromText(QString text);
    // Whether to read a typed answer; off for a stream that is not a terminal.
    void setInteractive(bool interactive) { interactive_ = interactive; }

    Answer MsgBox(const QString& text, Buttons buttons, Icon icon, int defaultButton,
                  const QString& title) override;
    QString InputBox(const QString& prompt, const QString& title,
                     const QString& defaultText) override;
    int Choose(const QString& captions, int buttonCount, int defaultButton, const QString& title,
               const QString& message, int option) override;
    std::optional<int> PickRow(const QString& title, const QStringList& columns,
                               const QList<QStringList>& rows) override;
    int ShowForm(const QString& formName, const QString& caption) override;

private:
    // A prepared or typed answer; none when nobody can answer.
    std::optional<QString> ask(const QString& prompt);
    void say(const QString& text);
    void sayNobody(const QString& answerGiven);

    std::FILE* in_;
    std::FILE* out_;
    bool interactive_;
    std::deque<QString> prepared_;
};

}  // namespace tvrx
