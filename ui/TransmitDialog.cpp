#include "ui/TransmitDialog.h"

#include "session/runtime/AppConfig.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace tvrx {

namespace {

constexpr int kMinimumWidth = 360;

}  // namespace

TransmitDialog::TransmitDialog(QWidget* parent)
    : QDialog(parent),
      title_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      status_(new QLabel(this)),
      abort_(new QPushButton(this)) {
    setWindowTitle(appConfig().ProductName);
    setMinimumWidth(kMinimumWidth);
    QFont titleFont = title_->font();
    titleFont.setBold(true);
    title_->setFont(titleFont);
    title_->setAlignment(Qt::AlignCenter);
    progress_->setTextVisible(false);
    status_->setAlignment(Qt::AlignCenter);
    abort_->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(abort_);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title_);
    layout->addWidget(progress_);
    layout->addWidget(status_);
    layout->addLayout(buttons);
}

void TransmitDialog::showState(const frmTransmit& form) {
    title_->setText(form.Label1.Caption);
    abort_->setText(form.cmdAbort.Caption);
    progress_->setRange(form.ProgressBar1.Min, form.ProgressBar1.Max);
    progress_->setValue(form.ProgressBar1.Value);
    status_->setText(form.lblStatus.Caption);
    QPalette colours = palette();
    if (form.lblStatus.ForeColor.isValid()) {
        colours.setColor(QPalette::WindowText, form.lblStatus.ForeColor);
    }
    status_->setPalette(colours);
}

void QtTransmitFace::showModal(frmTransmit& form) {
    TransmitDialog dialog(parent_.data());
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.showState(form);
    QObject::connect(dialog.abortButton(), &QPushButton::clicked, &dialog,
                     [&form] { form.cmdAbort_Click(); });
    QObject::connect(&dialog, &QDialog::rejected, &dialog, [&form] {
        if (form.visible()) form.cmdAbort_Click();
    });
    dialog_ = &dialog;
    dialog.show();
    form.runEventLoop();
    dialog_ = nullptr;
    dialog.hide();
}

void QtTransmitFace::refresh(frmTransmit& form) {
    if (dialog_) dialog_->showState(form);
}

}  // namespace tvrx
