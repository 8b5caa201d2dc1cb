#include "responses/colResponse.h"

namespace tvrx {

std::shared_ptr<clsClaimResponse> colResponse::Add(const QString& Claim, const QString& sKey) {
    auto response = std::make_shared<clsClaimResponse>();
    response->Claim = Claim;
    KeyedCollection<clsClaimResponse>::Add(response, sKey);
    return response;
}

}  // namespace tvrx
