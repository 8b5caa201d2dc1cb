#pragma once

#include <QtGlobal>

namespace tvrx {

class Frame;

// Whether the patient has a coverage row of the plan, asked in the caller's frame. A test
// that fails counts as no row, so the caller goes on as for a plan not yet attached.
bool patientHasPlan(Frame& frame, qint32 insID, qint32 patientID);

}  // namespace tvrx
