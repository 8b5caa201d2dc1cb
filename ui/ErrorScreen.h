#pragma once

#include "session/runtime/RecordingErrorReporter.h"

#include <QDialog>
#include <QString>

#include <functional>

class QPlainTextEdit;
class QPushButton;

namespace tvrx {

// The screen a user sees after an unexpected failure: what went wrong and where, a box
// for the user's comments (the patient, drug and insurance at hand help support find the
// cause) and the buttons "Send Error" and "Close". What sending does is the caller's
// business; the screen only hands over the comments, once, and closes.
class ErrorScreen : public QDialog {
    Q_OBJECT

public:
    using SendComments = std::function<void(const QString& comments)>;

    ErrorScreen(const ErrorReport& report, const QString& productName, SendComments send,
                QWidget* parent = nullptr);

    QString comments() const;
    // The failure as the screen words it: description, number and location.
    QString summary() const { return summary_; }

    QPlainTextEdit* commentsBox() const { return comments_; }
    QPushButton* sendButton() const { return send_; }
    QPushButton* closeButton() const { return close_; }

    // "Description (error N in Location)", the line the screen leads with.
    static QString summaryOf(const ErrorReport& report);

private:
    void sendAndClose();

    QString summary_;
    SendComments sendComments_;
    QPlainTextEdit* comments_ = nullptr;
    QPushButton* send_ = nullptr;
    QPushButton* close_ = nullptr;
};

}  // namespace tvrx
