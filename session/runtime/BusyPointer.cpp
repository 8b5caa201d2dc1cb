#include "session/runtime/BusyPointer.h"

#include "session/runtime/Session.h"

namespace tvrx::mdlMain {

BusyPointer& pointer() {
    if (!PointerService) PointerService = std::make_shared<NoBusyPointer>();
    return *PointerService;
}

}  // namespace tvrx::mdlMain
