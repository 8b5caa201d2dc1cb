#include "ui/ChoiceDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tvrx {

QStringList choiceButtonTexts(const QString& captions) {
    QStringList texts = captions.split(QLatin1Char(','));
    for (QString& text : texts) text = text.trimmed();
    return texts;
}

ChoiceDialog::ChoiceDialog(const QString& captions, int buttonCount, int defaultButton,
                           const QString& title, const QString& message, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(title);
    setObjectName(QStringLiteral("choiceDialog"));
    auto* layout = new QVBoxLayout(this);
    message_ = new QLabel(message, this);
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setMinimumWidth(360);
    layout->addWidget(message_, 1);

    QStringList texts = choiceButtonTexts(captions);
    if (buttonCount > 0 && buttonCount < texts.size()) texts = texts.mid(0, buttonCount);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    for (qsizetype i = 0; i < texts.size(); ++i) {
        auto* button = new QPushButton(texts.at(i), this);
        const int position = static_cast<int>(i) + 1;
        connect(button, &QPushButton::clicked, this, [this, position] { done(position); });
        row->addWidget(button);
        buttons_.append(button);
    }
    layout->addLayout(row);

    const int index =
        defaultButton >= 1 && defaultButton <= buttons_.size() ? defaultButton - 1 : 0;
    if (!buttons_.isEmpty()) {
        buttons_.at(index)->setDefault(true);
        buttons_.at(index)->setFocus();
    }
}

QString ChoiceDialog::message() const {
    return message_->text();
}

int ChoiceDialog::positionFrom(int execResult) const {
    return execResult >= 1 && execResult <= buttons_.size() ? execResult : closePosition();
}

void ChoiceDialog::reject() {
    done(closePosition());
}

}  // namespace tvrx
