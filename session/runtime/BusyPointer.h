#pragma once

#include <QList>

#include <memory>

namespace tvrx {

// The screen's mouse pointer, which the library turns into an hourglass while it works on
// something the user is waiting for (filling the result tree) and back afterwards.
class BusyPointer {
public:
    // The pointer values the library uses.
    static constexpr int Default = 0;
    static constexpr int Hourglass = 11;

    virtual ~BusyPointer() = default;
    virtual void setPointer(int pointer) = 0;
};

// For hosts without a screen: the pointer is nobody's concern.
class NoBusyPointer : public BusyPointer {
public:
    void setPointer(int /*pointer*/) override {}
};

// Keeps every value set, in order, for tests.
class RecordingBusyPointer : public BusyPointer {
public:
    void setPointer(int pointer) override { values_.append(pointer); }
    const QList<int>& values() const { return values_; }

private:
    QList<int> values_;
};

namespace mdlMain {
// The pointer service; one that does nothing unless a host set another.
BusyPointer& pointer();
}  // namespace mdlMain

}  // namespace tvrx
