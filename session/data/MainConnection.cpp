#include "session/data/MainConnection.h"

#include "session/data/DbConnection.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"

namespace tvrx::records {

DbConnection& mainConnection() {
    if (!mdlMain::MainConnection) fail(err::ObjectVariableNotSet);
    return *mdlMain::MainConnection;
}

}  // namespace tvrx::records
