#pragma once

#include "session/data/RecordSet.h"

#include <QtGlobal>

namespace tvrx {

// The rows a claim is built from for one coverage: rsIns is the plan row joined with the
// coverage's card, subscriber, clarification, group and person (the shape the builders
// also read the other insurance in), rsPatIns the coverage row itself.
struct PlanRows {
    RecordSet rsIns;
    RecordSet rsPatIns;
};

// Opens both on the main connection. A coverage that does not exist gives record sets at
// their end. A failure of the database is raised into the caller's frame.
PlanRows openPlanRows(qint32 patInsID);

// The plan row joined with the coverage: what rsIns holds, and what the builders open for
// the patient's other insurance.
RecordSet openPlanRow(qint32 patInsID);

}  // namespace tvrx
