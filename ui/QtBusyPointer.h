#pragma once

#include "session/runtime/BusyPointer.h"

namespace tvrx {

// The busy pointer of a desktop host: an hourglass (wait cursor) over the whole
// application, taken back when the library sets the default pointer.
class QtBusyPointer : public BusyPointer {
public:
    void setPointer(int pointer) override;

private:
    bool waiting_ = false;
};

}  // namespace tvrx
