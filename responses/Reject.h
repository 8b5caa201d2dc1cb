#pragma once

#include "session/runtime/KeyedCollection.h"

#include <QString>

#include <memory>

namespace tvrx {

// One reason a payer gave for refusing a claim or a reversal: its code as the payer sent
// it and the reason in words from the lookup database (empty for a code the database
// does not know).
class Reject {
public:
    QString code;
    QString Description;
};

// The rejects of one response, in the order the payer listed them.
class colReject : public KeyedCollection<Reject> {
public:
    // Makes a Reject, fills it and appends it, under sKey unless sKey is empty.
    std::shared_ptr<Reject> Add(const QString& code, const QString& Description,
                                const QString& sKey = {});
};

}  // namespace tvrx
