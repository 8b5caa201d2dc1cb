#include "claims/SignalBridge.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace tvrx {

namespace {

std::atomic<int> bridgeWriteFd{-1};

extern "C" void forwardSignal(int signalNumber) {
    const int savedErrno = errno;
    const int fd = bridgeWriteFd.load();
    if (fd >= 0) {
        const auto byte = static_cast<unsigned char>(signalNumber);
        [[maybe_unused]] const ssize_t written = ::write(fd, &byte, 1);
    }
    errno = savedErrno;
}

}  // namespace

struct SignalBridge::PreviousHandlers {
    std::vector<struct sigaction> actions;
};

SignalBridge::SignalBridge(const QList<int>& signalNumbers, std::function<void(int)> action)
    : signals_(signalNumbers), action_(std::move(action)) {
    // Without an application object no event loop would ever read the pipe.
    if (!QCoreApplication::instance()) return;
    int fds[2];
    if (::pipe2(fds, O_NONBLOCK | O_CLOEXEC) != 0) return;
    readFd_ = fds[0];
    writeFd_ = fds[1];
    previousWriteFd_ = bridgeWriteFd.exchange(writeFd_);
    notifier_ = std::make_unique<QSocketNotifier>(readFd_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { deliver(); });
    previous_ = std::make_unique<PreviousHandlers>();
    previous_->actions.resize(static_cast<size_t>(signals_.size()));
    struct sigaction handler = {};
    handler.sa_handler = forwardSignal;
    sigemptyset(&handler.sa_mask);
    handler.sa_flags = SA_RESTART;
    for (qsizetype i = 0; i < signals_.size(); ++i) {
        ::sigaction(signals_[i], &handler, &previous_->actions[static_cast<size_t>(i)]);
    }
}

SignalBridge::~SignalBridge() {
    if (!active()) return;
    for (qsizetype i = 0; i < signals_.size(); ++i) {
        ::sigaction(signals_[i], &previous_->actions[static_cast<size_t>(i)], nullptr);
    }
    bridgeWriteFd.store(previousWriteFd_);
    notifier_.reset();
    ::close(readFd_);
    ::close(writeFd_);
}

void SignalBridge::deliver() {
    unsigned char byte = 0;
    while (::read(readFd_, &byte, 1) == 1) {
        if (action_ && signals_.contains(byte)) action_(byte);
    }
}

}  // namespace tvrx
