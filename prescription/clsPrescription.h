#pragma once

#include <QString>

namespace tvrx {

// One fill of a prescription. For now it carries only what the claim exchange needs; the
// record, pricing and the claim builders join it here.
class clsPrescription {
public:
    // The printer the fill's labels and reports go to; colRX hands it over on Add.
    QString PrintDevice;
};

}  // namespace tvrx
