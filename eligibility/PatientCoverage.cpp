#include "eligibility/PatientCoverage.h"

#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/RecordSet.h"
#include "session/runtime/Frame.h"

namespace tvrx {

bool patientHasPlan(Frame& frame, qint32 insID, qint32 patientID) {
    RecordSet rs;
    bool none = true;
    frame([&] {
        rs = records::mainConnection().OpenRecordSet(
            QStringLiteral("Select PatInsID From PatIns Where InsID = ? And PatientID = ?"),
            {insID, patientID});
    });
    frame([&] { none = rs.Eof(); });
    frame([&] { rs.Close(); });
    return !none;
}

}  // namespace tvrx
