#pragma once

namespace tvrx {

class RecordSet;

// The values a row added to the list of automatic refills starts with: last refilled
// today when its LastDate is no date, no specific day, no interval, an empty description
// and the patient name "EMPTY", each only where the row holds no value of its own.
void applyAutoRefillDefaults(RecordSet& row);

}  // namespace tvrx
