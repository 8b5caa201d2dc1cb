#include "claims/ScriptedTransmitFace.h"

#include "session/runtime/Clock.h"

#include <QCoreApplication>

namespace tvrx {

void ScriptedTransmitFace::beforeTick(int tick, std::function<void()> action) {
    actions_.insert(tick, std::move(action));
}

void ScriptedTransmitFace::showModal(frmTransmit& form) {
    ++shown_;
    if (tickMilliseconds_ > 0) {
        form.Timer1.Interval = tickMilliseconds_;
        form.runEventLoop();
        return;
    }
    while (form.visible()) {
        QCoreApplication::processEvents();
        if (!form.visible()) break;
        form.Timer1_Timer();
    }
}

// Runs after loading and after each tick: the script's turn before the next tick.
void ScriptedTransmitFace::refresh(frmTransmit& form) {
    displays_.append({form.tickCounter(), form.lblStatus.Caption, form.lblStatus.ForeColor,
                      form.ProgressBar1.Value, form.visible()});
    const int ticks = form.tickCounter();
    if (clock_ && ticks > clockTick_) clock_->advanceSeconds(ticks - clockTick_);
    clockTick_ = ticks;
    if (!form.visible()) return;
    if (abortAfter_ > 0 && ticks >= abortAfter_) {
        form.cmdAbort_Click();
        return;
    }
    if (const auto action = actions_.find(ticks + 1); action != actions_.end()) (*action)();
}

}  // namespace tvrx
