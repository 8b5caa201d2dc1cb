#pragma once

#include <QDateTime>

namespace tvrx {

// The present date and time come from one place, so that tests can fix them.
class Clock {
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

class SystemClock : public Clock {
public:
    QDateTime now() const override;
};

// A clock that stands still until it is moved.
class FixedClock : public Clock {
public:
    explicit FixedClock(QDateTime at) : at_(std::move(at)) {}
    QDateTime now() const override { return at_; }
    void set(const QDateTime& at) { at_ = at; }
    void advanceSeconds(qint64 seconds) { at_ = at_.addSecs(seconds); }

private:
    QDateTime at_;
};

}  // namespace tvrx
