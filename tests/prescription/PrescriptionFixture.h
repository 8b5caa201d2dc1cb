#pragma once

#include "prescription/clsPrescription.h"
#include "records/PropertyCases.h"
#include "session/data/SamplePharmacy.h"
#include "support/SchemaFixture.h"

#include <memory>

namespace tvrx::test {

// A database with a patient (7), a prescriber (3) and a drug (5, price table 22, generic)
// for fills to point to; each test adds its own fills as tab-separated rows.
class PrescriptionFixture : public NoStrayReports<SchemaFixture> {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPrescription connecting;
        connecting.setConnection(db);
        rows("PATIENT",
             "PatientID\tLastName\tFirstName\tFacilityID\tMDID\n7\tBrennan\tThomas\t0\t3\n");
        rows("PHYSIC", "MDID\tLastName\tFirstName\n3\tHadley\tSimone\n");
        rows("DRUG",
             "DrugID\tName\tNDC\tPriceTableID\tGeneric\n5\tLISINOPRIL 10MG TAB\t"
             "60731041101\t22\t1\n");
    }

    void rows(const char* table, const char* tabSeparated) {
        loadTabSeparated(*db, QString::fromLatin1(table), QString::fromUtf8(tabSeparated));
    }

    // The fill as a host reads it: a fresh object, its key, GetData.
    std::unique_ptr<clsPrescription> loaded(qint32 id) const {
        auto rx = std::make_unique<clsPrescription>();
        rx->RXInfoID = id;
        rx->GetData();
        return rx;
    }

    QStringList logChanges() const {
        QStringList changes;
        RecordSet rs = db->OpenRecordSet("SELECT Changes FROM LOG_RX ORDER BY LogRxID");
        for (; !rs.Eof(); rs.MoveNext()) changes.append(rs.Fields(0).toString());
        return changes;
    }
};

}  // namespace tvrx::test
