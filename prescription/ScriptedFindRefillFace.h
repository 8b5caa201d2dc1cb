#pragma once

#include "prescription/frmFindRefill.h"

#include <deque>

namespace tvrx {

// A finder played by a script, for tests: each showing keeps the caption and the rows as
// shown, and is answered with the next gesture queued; with none left the window is
// closed.
class ScriptedFindRefillFace : public FindRefillFace {
public:
    struct Shown {
        QString caption;
        QList<QStringList> rows;
        std::optional<int> row;
    };

    void add(FindRefillGesture gesture) { gestures_.push_back(gesture); }
    const QList<Shown>& shown() const { return shown_; }
    int pending() const { return int(gestures_.size()); }

    FindRefillGesture next(const frmFindRefill& form) override;

private:
    std::deque<FindRefillGesture> gestures_;
    QList<Shown> shown_;
};

}  // namespace tvrx
