#pragma once

#include "responses/clsClaimResponse.h"
#include "session/runtime/KeyedCollection.h"

#include <QString>

#include <memory>

namespace tvrx {

// A list of payer responses for the host's own use; the library itself keeps none.
class colResponse : public KeyedCollection<clsClaimResponse> {
public:
    // Makes a response object holding Claim (not yet decoded) and appends it, under sKey
    // unless sKey is empty.
    std::shared_ptr<clsClaimResponse> Add(const QString& Claim, const QString& sKey = {});
};

}  // namespace tvrx
