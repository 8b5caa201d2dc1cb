#pragma once

#include "claims/frmTransmit.h"

#include <QColor>
#include <QList>
#include <QMap>
#include <QString>

#include <functional>
#include <memory>

namespace tvrx {

class FixedClock;

// A wait played by a script, for tests. By default the ticks follow one another at once,
// with the file events handled between them, so a wait of a hundred seconds takes no
// time; tickEvery() makes them real, for a response that another process writes. The
// script can act before a given tick, press ABORT after a number of ticks, and move a
// test clock on by a second per tick. Every display the form showed is kept.
class ScriptedTransmitFace : public TransmitFace {
public:
    struct Display {
        qint16 tick = 0;
        QString status;
        QColor statusColour;
        int progress = 0;
        bool visible = false;
    };

    // Presses ABORT once this many ticks have passed (0: never). A script that does not
    // say gives up after ten minutes of ticks, so a faulty test cannot wait for ever.
    void abortAfterTicks(int ticks) { abortAfter_ = ticks; }
    // Runs the action just before the tick (1 for the first), as if between two seconds.
    void beforeTick(int tick, std::function<void()> action);
    // Moves this clock on by one second with each tick.
    void moveClock(std::shared_ptr<FixedClock> clock) { clock_ = std::move(clock); }
    // Ticks on the event loop every so many milliseconds instead of at once.
    void tickEvery(int milliseconds) { tickMilliseconds_ = milliseconds; }

    const QList<Display>& displays() const { return displays_; }
    // How many waits were shown; a response already there needs none.
    int shown() const { return shown_; }

    void showModal(frmTransmit& form) override;
    void refresh(frmTransmit& form) override;

private:
    int abortAfter_ = 600;
    int tickMilliseconds_ = 0;
    QMap<int, std::function<void()>> actions_;
    std::shared_ptr<FixedClock> clock_;
    int clockTick_ = 0;
    QList<Display> displays_;
    int shown_ = 0;
};

}  // namespace tvrx
