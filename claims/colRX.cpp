#include "claims/colRX.h"

#include "session/runtime/Frame.h"

namespace tvrx {

colRX::Pointer colRX::Add(const QString& sKey) {
    Pointer added;
    Frame frame("colRX:Add");
    frame([&] { added = std::make_shared<clsPrescription>(); });
    frame([&] { added->PrintDevice = PrintDevice; });
    frame([&] { items_.Add(added, sKey); });
    return added;
}

}  // namespace tvrx
