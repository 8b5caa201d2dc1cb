#pragma once

#include "prescription/frmFindRefill.h"

#include <cstdio>

namespace tvrx {

// The refill finder on a console: the caption and the numbered rows are printed, and the
// gesture is asked through the session's user interaction, so that prepared answers
// (`--answer`) serve it as they serve any question: a row's number opens that fill, "ok"
// the current row, "f" finds another number, "c" or "F2" cancels. An empty answer or the
// end of input closes the list, which is a cancel.
class ConsoleFindRefillFace : public FindRefillFace {
public:
    explicit ConsoleFindRefillFace(std::FILE* out = stderr);

    FindRefillGesture next(const frmFindRefill& form) override;

private:
    void print(const frmFindRefill& form);

    std::FILE* out_;
};

}  // namespace tvrx
