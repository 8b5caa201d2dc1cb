#pragma once

#include "session/runtime/UserInteraction.h"

#include <QPointer>
#include <QWidget>

namespace tvrx {

// The user-interaction service on the desktop: each question is a modal Qt dialog over the
// host's window. A call blocks in the dialog's own event loop until the user answers.
// Where a question names no title, the product name is the title.
class QtUserInteraction : public UserInteraction {
public:
    explicit QtUserInteraction(QWidget* parent = nullptr) : parent_(parent) {}

    // A message box with the set's buttons, the icon and the default button. Escape answers
    // with the set's Cancel, or else its Abort, its No or its only button.
    Answer MsgBox(const QString& text, Buttons buttons, Icon icon, int defaultButton,
                  const QString& title) override;
    QString InputBox(const QString& prompt, const QString& title,
                     const QString& defaultText) override;
    // The further whole number every caller passes equals the button count; the dialog has
    // no use for it, since closing the window already answers as the last button.
    int Choose(const QString& captions, int buttonCount, int defaultButton, const QString& title,
               const QString& message, int option) override;
    std::optional<int> PickRow(const QString& title, const QStringList& columns,
                               const QList<QStringList>& rows) override;
    // The library's own forms (transmission wait, eligibility, refill finder, preview) are
    // shown by the parts that own them. This stands in for any other form by name: an
    // empty modal window with the caption as title, a Close button, and the dialog's
    // result code (0 when closed).
    int ShowForm(const QString& formName, const QString& caption) override;

private:
    QWidget* parent() const { return parent_.data(); }

    QPointer<QWidget> parent_;
};

}  // namespace tvrx
