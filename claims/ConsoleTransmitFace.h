#pragma once

#include "claims/frmTransmit.h"

#include <cstdio>

namespace tvrx {

// The wait on a console. On a terminal one line is redrawn each second: the title, the
// progress bar, the seconds and the status (red once the time is exceeded). Written to a
// file or a pipe, a plain line appears when the wait starts, every ten seconds, and at the
// end. Ctrl-C (and a request to stop the program) presses ABORT.
class ConsoleTransmitFace : public TransmitFace {
public:
    explicit ConsoleTransmitFace(std::FILE* out = stderr);

    // Whether to redraw one line in place; on by default when out is a terminal.
    void setLive(bool live) { live_ = live; }

    void showModal(frmTransmit& form) override;
    void refresh(frmTransmit& form) override;

private:
    void drawLive(const frmTransmit& form);
    void writePlain(const frmTransmit& form);
    void writeEnd(const frmTransmit& form);

    std::FILE* out_;
    bool live_;
};

}  // namespace tvrx
