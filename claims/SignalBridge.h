#pragma once

#include <QList>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace tvrx {

// Brings the process's signals (Ctrl-C, a request to stop) into the event loop. A signal
// handler may do next to nothing safely, so it writes the signal's number to a pipe, and
// the loop runs the action when the pipe can be read. While a bridge lives it replaces the
// handlers of its signals; the previous ones come back when it goes. Bridges may nest; the
// newest receives the signals.
class SignalBridge {
public:
    SignalBridge(const QList<int>& signalNumbers, std::function<void(int signalNumber)> action);
    ~SignalBridge();
    SignalBridge(const SignalBridge&) = delete;
    SignalBridge& operator=(const SignalBridge&) = delete;

    // False without an application object or when the pipe could not be made; the
    // signals keep their handlers then.
    bool active() const { return readFd_ >= 0; }

private:
    void deliver();

    QList<int> signals_;
    std::function<void(int)> action_;
    int readFd_ = -1;
    int writeFd_ = -1;
    int previousWriteFd_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    struct PreviousHandlers;
    std::unique_ptr<PreviousHandlers> previous_;
};

}  // namespace tvrx
