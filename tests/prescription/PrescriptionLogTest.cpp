#include "prescription/PrescriptionFixture.h"

namespace tvrx {
namespace {

using test::at;

class PrescriptionLogTest : public test::PrescriptionFixture {
protected:
    void SetUp() override {
        PrescriptionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        rows("RXINFO",
             "RXInfoID\tNumber\tRefillNumber\tDate\tQty\tPrice\tCopay\tQtyRemain\tDS\tPatient\t"
             "Doctor\tSIG\tDrug\tNotes\n"
             "60\t700\t0\t2026-01-08 09:14:27\t30\t12.6\t10\t150\t30\tBRENNAN, THOMAS\t"
             "HADLEY, SIMONE\tTAKE 1 TABLET DAILY\tLISINOPRIL 10MG TAB\t\n");
    }
};

const char* const kQtyChange =
    "<RX_Changes><Qty Original_Value=\"30\" New_Value=\"60\"/></RX_Changes>";

// A new prescription's first save only takes the picture; every later save logs what
// changed since, once, and a save without a watched change logs nothing.
TEST_P(PrescriptionLogTest, EachWatchedChangeIsLoggedOnce) {
    const auto rx = loaded(60);
    rx->PrescriptionType = NewRx;
    rx->Update();
    EXPECT_TRUE(logChanges().isEmpty());
    rx->Qty = 60;
    rx->Update();
    rx->Update();
    rx->Notes = "called the prescriber";
    rx->Update();
    EXPECT_EQ(logChanges(), QStringList{kQtyChange});

    const auto edited = loaded(60);
    edited->Update();
    EXPECT_EQ(logChanges().size(), 1);
    RecordSet entry = db->OpenRecordSet("SELECT LogDate, RxInfoID, RPhID, TechID FROM LOG_RX");
    EXPECT_TRUE(entry.Fields(0).toDateTime().isValid());
    EXPECT_EQ(entry.Fields(1).toInt(), 60);
    EXPECT_EQ(entry.Fields(2).toInt(), 0);
    EXPECT_EQ(entry.Fields(3).toInt(), 0);
}

// Log rows brought from another system with keys of their own do not stop the log from
// growing, on a database whose key counter knew nothing of them.
TEST_P(PrescriptionLogTest, RowsBroughtWithTheirOwnKeysDoNotStopTheLog) {
    rows("LOG_RX", "LogRxID\tRxInfoID\tChanges\n1\t60\tbrought\n2\t60\tbrought\n");
    const auto rx = loaded(60);
    rx->Qty = 60;
    rx->Update();
    EXPECT_TRUE(reporter->reports().isEmpty());
    EXPECT_EQ(logChanges(), (QStringList{"brought", "brought", kQtyChange}));
}

// Every watched value in its log form, in the log's order; the quantity left goes by
// the name QtyLeft. Apostrophes stay single, the markup characters are escaped, and a
// control character that XML cannot hold shows as "?" while the row keeps it.
TEST_P(PrescriptionLogTest, AChangeOfEveryWatchedValueIsOneEntryInItsOwnForms) {
    const auto rx = loaded(60);
    rx->DateFilled = at(2026, 1, 9, 15, 4, 5);
    rx->Qty = 45.5;
    rx->Price = 7;
    rx->Copay = 0.5;
    rx->QtyRemain = 0;
    rx->setDS("15  ");
    rx->Patient = "O'BRIEN, PAT";
    rx->Doctor = "Smith & \"Jones\" <MD>";
    rx->SIG = QStringLiteral("TAKE 1\x01 TABLET\tDAILY");
    rx->Drug = "LISINOPRIL 20MG TAB   ";
    rx->Update();
    const QString expected = QStringLiteral(
        "<RX_Changes>"
        "<Date Original_Value=\"01/08/2026 09:14:27\" New_Value=\"01/09/2026 15:04:05\"/>"
        "<Qty Original_Value=\"30\" New_Value=\"45.5\"/>"
        "<Price Original_Value=\"$ 12.60\" New_Value=\"$ 7.00\"/>"
        "<Copay Original_Value=\"$ 10.00\" New_Value=\"$ .50\"/>"
        "<QtyLeft Original_Value=\"150\" New_Value=\"0\"/>"
        "<DS Original_Value=\"30\" New_Value=\"15\"/>"
        "<Patient Original_Value=\"BRENNAN, THOMAS\" New_Value=\"O'BRIEN, PAT\"/>"
        "<Doctor Original_Value=\"HADLEY, SIMONE\" "
        "New_Value=\"Smith &amp; &quot;Jones&quot; &lt;MD&gt;\"/>"
        "<SIG Original_Value=\"TAKE 1 TABLET DAILY\" New_Value=\"TAKE 1? TABLET&#9;DAILY\"/>"
        "<Drug Original_Value=\"LISINOPRIL 10MG TAB\" New_Value=\"LISINOPRIL 20MG TAB\"/>"
        "</RX_Changes>");
    EXPECT_EQ(logChanges(), QStringList{expected});
    RecordSet row = db->OpenRecordSet("SELECT Patient, SIG, DS FROM RXINFO WHERE RXInfoID = 60");
    EXPECT_EQ(row.Fields(0).toString(), "O'BRIEN, PAT");
    EXPECT_EQ(row.Fields(1).toString(), QStringLiteral("TAKE 1\x01 TABLET\tDAILY"));
    EXPECT_EQ(row.Fields(2).toString(), "15  ");
}

// Comparisons are exact: a case change of a text or a hundredth of a dollar is logged.
TEST_P(PrescriptionLogTest, ComparisonsAreExact) {
    const auto rx = loaded(60);
    rx->Patient = "Brennan, Thomas";
    rx->Price = 12.61;
    rx->Update();
    EXPECT_EQ(logChanges(), QStringList{"<RX_Changes>"
                                        "<Price Original_Value=\"$ 12.60\" New_Value=\"$ 12.61\"/>"
                                        "<Patient Original_Value=\"BRENNAN, THOMAS\" "
                                        "New_Value=\"Brennan, Thomas\"/>"
                                        "</RX_Changes>"});
}

TVRX_BACKENDS(PrescriptionLogTest);

}  // namespace
}  // namespace tvrx
