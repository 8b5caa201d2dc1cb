#include "ui/ErrorScreen.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace tvrx {

namespace {

// Report texts come from failures and claim data; never let a stray "<" turn into markup.
QLabel* plainLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QString sourceText(const ErrorReport& report) {
    if (report.line == 0) return report.source;
    return QStringLiteral("%1, line %2").arg(report.source).arg(report.line);
}

QWidget* headline(const QString& productName, const QString& summary, QWidget* parent) {
    auto* box = new QWidget(parent);
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* icon = new QLabel(box);
    const int size = box->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    icon->setPixmap(box->style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(size));
    icon->setAlignment(Qt::AlignTop);
    layout->addWidget(icon);

    auto* texts = new QVBoxLayout;
    texts->addWidget(
        plainLabel(QStringLiteral("%1 has met an error it did not expect.").arg(productName), box));
    QLabel* what = plainLabel(summary, box);
    QFont bold = what->font();
    bold.setBold(true);
    what->setFont(bold);
    texts->addWidget(what);
    layout->addLayout(texts, 1);
    return box;
}

QFormLayout* facts(const ErrorReport& report, QWidget* parent) {
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Error number:"), plainLabel(report.number, parent));
    form->addRow(QStringLiteral("Location:"), plainLabel(report.location, parent));
    form->addRow(QStringLiteral("Source:"), plainLabel(sourceText(report), parent));
    if (!report.details.isEmpty()) {
        form->addRow(QStringLiteral("Details:"), plainLabel(report.details, parent));
    }
    return form;
}

}  // namespace

QString ErrorScreen::summaryOf(const ErrorReport& report) {
    return QStringLiteral("%1 (error %2 in %3)")
        .arg(report.description, report.number, report.location);
}

ErrorScreen::ErrorScreen(const ErrorReport& report, const QString& productName, SendComments send,
                         QWidget* parent)
    : QDialog(parent), summary_(summaryOf(report)), sendComments_(std::move(send)) {
    setWindowTitle(QStringLiteral("%1 - Error").arg(productName));
    setObjectName(QStringLiteral("errorScreen"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(headline(productName, summary_, this));
    layout->addLayout(facts(report, this));

    layout->addWidget(plainLabel(
        QStringLiteral("Comments: please tell us what you were doing, with the patient name, "
                       "drug name and insurance company, then click Send Error."),
        this));
    comments_ = new QPlainTextEdit(this);
    comments_->setObjectName(QStringLiteral("comments"));
    comments_->setTabChangesFocus(true);
    layout->addWidget(comments_, 1);

    auto* buttons = new QDialogButtonBox(this);
    send_ = buttons->addButton(QStringLiteral("&Send Error"), QDialogButtonBox::AcceptRole);
    send_->setObjectName(QStringLiteral("sendError"));
    close_ = buttons->addButton(QStringLiteral("&Close"), QDialogButtonBox::RejectRole);
    close_->setObjectName(QStringLiteral("close"));
    layout->addWidget(buttons);

    // Sending empty comments would only add noise to the log.
    send_->setEnabled(false);
    connect(comments_, &QPlainTextEdit::textChanged, this,
            [this] { send_->setEnabled(!comments().isEmpty()); });
    connect(send_, &QPushButton::clicked, this, [this] { sendAndClose(); });
    connect(close_, &QPushButton::clicked, this, &QDialog::reject);

    comments_->setFocus();
    resize(520, 380);
}

QString ErrorScreen::comments() const {
    return comments_->toPlainText().trimmed();
}

void ErrorScreen::sendAndClose() {
    if (comments().isEmpty()) return;
    if (sendComments_) sendComments_(comments());
    accept();
}

}  // namespace tvrx
