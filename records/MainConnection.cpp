#include "records/MainConnection.h"

#include "session/DbConnection.h"
#include "session/ErrorNumbers.h"
#include "session/Failure.h"
#include "session/Session.h"

namespace tvrx::records {

DbConnection& mainConnection() {
    if (!mdlMain::MainConnection) fail(err::ObjectVariableNotSet);
    return *mdlMain::MainConnection;
}

}  // namespace tvrx::records
