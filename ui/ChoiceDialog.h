#pragma once

#include <QDialog>
#include <QList>
#include <QString>
#include <QStringList>

class QLabel;
class QPushButton;

namespace tvrx {

// Captions of a choice dialog as its buttons show them: split at the commas, trimmed, with
// their "&" access keys kept ("PROCESS &MAIN,&CANCEL" gives "PROCESS &MAIN", "&CANCEL").
QStringList choiceButtonTexts(const QString& captions);

// The dialog that settles a question with more than two answers, such as which of two
// plans a claim is billed to: a message and one button per caption. Its result is the
// 1-based position of the button pressed; closing the window answers as the last button,
// which is the "Cancel" or "Close" of every choice the library offers.
class ChoiceDialog : public QDialog {
    Q_OBJECT

public:
    // buttonCount limits the captions used (all of them when it is 0 or less);
    // defaultButton is 1-based and falls back to the first button when out of range.
    ChoiceDialog(const QString& captions, int buttonCount, int defaultButton, const QString& title,
                 const QString& message, QWidget* parent = nullptr);

    const QList<QPushButton*>& choiceButtons() const { return buttons_; }
    QString message() const;
    // The position the dialog answers with when closed without a button.
    int closePosition() const { return static_cast<int>(buttons_.size()); }
    // The position from a finished exec(), with a closed window taken as the last button.
    int positionFrom(int execResult) const;

    void reject() override;

private:
    QLabel* message_ = nullptr;
    QList<QPushButton*> buttons_;
};

}  // namespace tvrx
