#pragma once

#include "claims/ConsoleTransmitFace.h"
#include "claims/frmTransmit.h"

namespace tvrx::cli {

// The console's wait for a payer's answer, remembering whether it was shown and how it
// ended: the commands that send something tell "not sent", "sent but not read" and
// "aborted" apart by it.
class WatchedTransmitFace : public TransmitFace {
public:
    void showModal(frmTransmit& form) override {
        shown = true;
        console_.showModal(form);
        answered = form.Success;
    }
    void refresh(frmTransmit& form) override { console_.refresh(form); }

    bool shown = false;
    bool answered = false;

private:
    ConsoleTransmitFace console_;
};

}  // namespace tvrx::cli
