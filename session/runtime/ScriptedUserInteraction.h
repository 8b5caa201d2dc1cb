#pragma once

#include "session/runtime/UserInteraction.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <deque>
#include <functional>

namespace tvrx {

// A user who answers from a prepared queue and remembers every question, for tests.
// A question with no answer queued is a fault of the test: it is reported through the
// unexpected-call handler (by default the process stops with a message). In permissive
// mode every question is answered with its default instead, for fuzzing and demos.
class ScriptedUserInteraction : public UserInteraction {
public:
    enum class Kind { MsgBox, InputBox, Choose, PickRow, ShowForm };

    struct Call {
        Kind kind;
        // The arguments as text, in the order of the operation.
        QStringList args;
        QString text() const { return args.value(0); }
        QString title() const;
    };

    ScriptedUserInteraction();

    // Queue the answer to the next question of that kind.
    void answerMsgBox(Answer answer);
    void answerInputBox(const QString& text);
    void answerChoose(int position);
    void answerPickRow(std::optional<int> row);
    void answerShowForm(int result);

    void setPermissive(bool permissive) { permissive_ = permissive; }
    void setUnexpectedCallHandler(std::function<void(const QString&)> handler);

    const QList<Call>& calls() const { return calls_; }
    QList<Call> callsOf(Kind kind) const;
    // Answers queued but never asked for.
    int pendingAnswers() const { return static_cast<int>(answers_.size()); }
    void clear();

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
    struct Queued {
        Kind kind;
        QVariant value;
    };

    // The queued answer for this kind, or none (after reporting the unexpected call).
    std::optional<QVariant> take(Kind kind, const Call& call);

    std::deque<Queued> answers_;
    QList<Call> calls_;
    bool permissive_ = false;
    std::function<void(const QString&)> onUnexpected_;
};

QString kindName(ScriptedUserInteraction::Kind kind);

}  // namespace tvrx
