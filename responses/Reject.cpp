#include "responses/Reject.h"

namespace tvrx {

std::shared_ptr<Reject> colReject::Add(const QString& code, const QString& Description,
                                       const QString& sKey) {
    auto reject = std::make_shared<Reject>();
    reject->code = code;
    reject->Description = Description;
    KeyedCollection<Reject>::Add(reject, sKey);
    return reject;
}

}  // namespace tvrx
