#include "ui/QtUserInteraction.h"

#include "session/runtime/AppConfig.h"
#include "ui/ChoiceDialog.h"
#include "ui/RowPicker.h"

#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace tvrx {

namespace {

QString titleOr(const QString& title) {
    return title.isEmpty() ? appConfig().ProductName : title;
}

// The library writes line breaks as carriage return and line feed.
QString displayText(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

QMessageBox::StandardButton standardButton(Answer answer) {
    switch (answer) {
        case Answer::OK:
            return QMessageBox::Ok;
        case Answer::Cancel:
            return QMessageBox::Cancel;
        case Answer::Abort:
            return QMessageBox::Abort;
        case Answer::Retry:
            return QMessageBox::Retry;
        case Answer::Ignore:
            return QMessageBox::Ignore;
        case Answer::Yes:
            return QMessageBox::Yes;
        case Answer::No:
            return QMessageBox::No;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon messageIcon(Icon icon) {
    switch (icon) {
        case Icon::None:
            return QMessageBox::NoIcon;
        case Icon::Critical:
            return QMessageBox::Critical;
        case Icon::Question:
            return QMessageBox::Question;
        case Icon::Exclamation:
            return QMessageBox::Warning;
        case Icon::Information:
            return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

// The answer of the button pressed; a box ended some other way answers as Escape would.
Answer answerOf(const QMessageBox& box, const QList<Answer>& answers, Answer fallback) {
    const QMessageBox::StandardButton pressed = box.standardButton(box.clickedButton());
    for (Answer answer : answers) {
        if (standardButton(answer) == pressed) return answer;
    }
    return answers.contains(Answer::Cancel) ? Answer::Cancel : fallback;
}

}  // namespace

Answer QtUserInteraction::MsgBox(const QString& text, Buttons buttons, Icon icon, int defaultButton,
                                 const QString& title) {
    const QList<Answer> answers = buttonsOf(buttons);
    const Answer byDefault = defaultAnswer(buttons, defaultButton);
    QMessageBox box(messageIcon(icon), titleOr(title), displayText(text), QMessageBox::NoButton,
                    parent());
    for (Answer answer : answers) box.addButton(standardButton(answer));
    box.setDefaultButton(standardButton(byDefault));
    box.exec();
    return answerOf(box, answers, byDefault);
}

QString QtUserInteraction::InputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText) {
    QInputDialog dialog(parent());
    dialog.setInputMode(QInputDialog::TextInput);
    dialog.setWindowTitle(titleOr(title));
    dialog.setLabelText(displayText(prompt));
    dialog.setTextValue(defaultText);
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

int QtUserInteraction::Choose(const QString& captions, int buttonCount, int defaultButton,
                              const QString& title, const QString& message, int /*option*/) {
    ChoiceDialog dialog(captions, buttonCount, defaultButton, titleOr(title), displayText(message),
                        parent());
    return dialog.positionFrom(dialog.exec());
}

std::optional<int> QtUserInteraction::PickRow(const QString& title, const QStringList& columns,
                                              const QList<QStringList>& rows) {
    RowPicker picker(titleOr(title), columns, rows, parent());
    picker.exec();
    return picker.pickedRow();
}

int QtUserInteraction::ShowForm(const QString& formName, const QString& caption) {
    QDialog form(parent());
    form.setObjectName(formName);
    form.setWindowTitle(caption.isEmpty() ? formName : caption);
    auto* layout = new QVBoxLayout(&form);
    auto* label = new QLabel(caption.isEmpty() ? formName : caption, &form);
    label->setTextFormat(Qt::PlainText);
    layout->addWidget(label);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &form);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &form, &QDialog::reject);
    layout->addWidget(buttons);
    return form.exec();
}

}  // namespace tvrx
