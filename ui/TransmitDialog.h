#pragma once

#include "claims/frmTransmit.h"

#include <QDialog>
#include <QPointer>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tvrx {

// The transmit form on the desktop: "Transmitting Claim", a progress bar over the seconds
// of the delay, the status line (red once the time is exceeded) and ABORT. Closing the
// window or pressing Escape aborts too.
class TransmitDialog : public QDialog {
    Q_OBJECT

public:
    explicit TransmitDialog(QWidget* parent = nullptr);

    // Draws the form's controls.
    void showState(const frmTransmit& form);

    QLabel* titleLabel() const { return title_; }
    QLabel* statusLabel() const { return status_; }
    QProgressBar* progressBar() const { return progress_; }
    QPushButton* abortButton() const { return abort_; }

private:
    QLabel* title_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QLabel* status_ = nullptr;
    QPushButton* abort_ = nullptr;
};

// The transmit wait as a modal dialog over the host's window.
class QtTransmitFace : public TransmitFace {
public:
    explicit QtTransmitFace(QWidget* parent = nullptr) : parent_(parent) {}

    void showModal(frmTransmit& form) override;
    void refresh(frmTransmit& form) override;

private:
    QPointer<QWidget> parent_;
    TransmitDialog* dialog_ = nullptr;
};

}  // namespace tvrx
