#include "prescription/PrescriptionFixture.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsPatient.h"
#include "session/runtime/ErrorNumbers.h"

namespace tvrx {
namespace {

using test::at;
class clsPrescriptionTest : public test::PrescriptionFixture {};

// Two quotes make it 51 characters once doubled.
const QString kPatient49 = QStringLiteral("O'NEIL-D'ARCY, PATRICIA ANNE MARGARET ELIZABETHYZ");

// What a fill's row holds after Update and what GetData makes of it: dates cut to the
// minute or the day, the patient's name doubled then cut to 50, flags as -1, the
// transfer mark never written, and the deleted mark kept as 1 for any other non-zero.
TEST_P(clsPrescriptionTest, EveryColumnIsWrittenAndReadInItsOwnForm) {
    rows("RXINFO", "RXInfoID\tNumber\tRefillNumber\n40\t100040\t0\n");
    ASSERT_EQ(kPatient49.size(), 49);
    const std::vector<test::ColumnCase> cases{
        {"RefillNumber", 0},
        {"Date", at(2026, 3, 2, 14, 35, 48), at(2026, 3, 2, 14, 35), at(2026, 3, 2, 14, 35)},
        {"Patient", kPatient49, kPatient49.left(48), kPatient49.left(48)},
        {"Transferred", {}, QVariant(), 0},
        {"Deleted", 78, 1, 1},
        {"DateChanged", {}, clock->now(), clock->now()},
    };
    clsPrescription written;
    test::expectEveryColumnWrittenAndRead(*db, prescriptionColumns(), &clsPrescription::RXInfoID,
                                          40, {{"DNDC"}}, cases, written);
}

// Whatever the written object held, a null stored value reads in its own default.
TEST_P(clsPrescriptionTest, NullColumnsReadAsTheirDefaults) {
    rows("RXINFO", "RXInfoID\tNumber\tRefillNumber\tDate\n41\t100041\t0\t2026-03-02 08:00:00\n");
    const auto rx = loaded(41);
    EXPECT_EQ(rx->DS(), "0");
    EXPECT_EQ(rx->ProductIDQualifier(), "03");
    EXPECT_EQ(rx->Form, 1);
    EXPECT_EQ(rx->OtherDate, clock->now().date().startOfDay());
    EXPECT_EQ(rx->DenialDate, conv::ZeroDate());
    EXPECT_EQ(rx->OriginalDate, conv::ZeroDate());
    EXPECT_EQ(rx->RefillsLeft(), "0");
}

struct FillCase {
    const char* name;
    qint32 id;
    const char* refillsLeft;
    QDateTime originalDate;
    double originalQty;
    qint32 originalRefills;
};

// Prescription 500 has five refills: its first refill was voided and its third deleted,
// which gives them back. 501's original keeps no original date and no original
// quantity, so its own date and quantity stand in. 502 lost its original. 503 and 504
// have three refills, 504 more quantity remaining than three fills of its original
// quantity.
TEST_P(clsPrescriptionTest, AFillReadsItsOriginalAndWhatWasLeftAsOfItself) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tDate\tQty\tQtyRemain\tRefills\tOriginalRefills\t"
         "OriginalDate\tOriginalQty\tVoided\tDeleted\n"
         "10\t500\t0\t2026-01-08 09:14:27\t30\t150\t5\t5\t2026-01-08 00:00:00\t30\t0\t0\n"
         "11\t500\t1\t2026-02-06 10:00:00\t30\t120\t4\t\t\t\t-1\t0\n"
         "12\t500\t2\t2026-02-07 10:00:00\t30\t120\t4\t\t2025-01-01 00:00:00\t99\t0\t0\n"
         "13\t500\t3\t2026-03-08 10:00:00\t30\t90\t3\t\t\t\t0\t1\n"
         "14\t500\t4\t2026-04-08 10:00:00\t30\t91\t2\t\t\t\t0\t0\n"
         "20\t501\t0\t2026-02-01 10:30:00\t60\t60\t2\t2\t\t0\t0\t0\n"
         "21\t501\t1\t2026-03-01 10:30:00\t60\t60\t1\t\t\t\t0\t0\n"
         "31\t502\t1\t2026-03-01 10:30:00\t30\t\t1\t\t2026-01-01 00:00:00\t30\t0\t0\n"
         "40\t503\t0\t2026-01-08 09:14:27\t30\t90\t3\t3\t2026-01-08 00:00:00\t30\t0\t0\n"
         "41\t504\t0\t2026-01-08 09:14:27\t30\t91\t3\t3\t2026-01-08 00:00:00\t30\t0\t0\n");
    const QDateTime day8 = at(2026, 1, 8);
    const std::vector<FillCase> cases{
        {"original of 500", 10, "5", day8, 30, 5},
        {"voided first refill", 11, "5", day8, 30, 5},
        {"second refill after a voided one", 12, "4", day8, 30, 5},
        {"deleted third refill", 13, "4", day8, 30, 5},
        {"fourth refill, more left than whole refills", 14, "3+", day8, 30, 5},
        {"refill of an original without its own date or quantity", 21, "1", at(2026, 2, 1, 10, 30),
         60, 2},
        {"refill without an original", 31, "0", conv::ZeroDate(), 0, 0},
        {"original, remainder within its refills", 40, "3", day8, 30, 3},
        {"original, remainder beyond its refills", 41, "3+", day8, 30, 3},
    };
    for (const FillCase& c : cases) {
        SCOPED_TRACE(c.name);
        const auto rx = loaded(c.id);
        EXPECT_EQ(rx->RefillsLeft(), c.refillsLeft);
        EXPECT_EQ(rx->OriginalDate, c.originalDate);
        EXPECT_EQ(rx->OriginalQty, c.originalQty);
        EXPECT_EQ(rx->OriginalRefills, c.originalRefills);
    }
}

// A negative number in a zero-text column cannot be read: one report naming the fill's
// PAMC, the property stays as it was and the rest of the row still reads.
TEST_P(clsPrescriptionTest, ANegativeNumberInAZeroTextColumnIsOneReport) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tLogID\tQty\tDate\tPAMC\n"
         "42\t100042\t0\t-5\t30\t2026-03-02 08:00:00\tPA-42\n");
    clsPrescription rx;
    rx.RXInfoID = 42;
    rx.LogID = 9;
    rx.GetData();
    EXPECT_EQ(reporter->reports().value(0).details, "PAMC PA-42");
    EXPECT_EQ(takeReports(),
              QStringList{test::reportOf("clsPrescription:GetData", err::TypeMismatch)});
    EXPECT_EQ(rx.LogID, 9);
    EXPECT_EQ(rx.Qty, 30);
    EXPECT_EQ(rx.PAMC, "PA-42");
}

// Reading a fill reads its patient, prescriber and drug afresh; the drug's price table and
// generic flag come with it.
TEST_P(clsPrescriptionTest, AFillReadsItsPatientPrescriberAndDrug) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tPatientID\tMDID\tDrugID\tDate\n"
         "44\t100044\t0\t7\t3\t5\t2026-03-02 08:00:00\n");
    auto rx = loaded(44);
    EXPECT_EQ(rx->PatientClass()->LastName, "Brennan");
    EXPECT_EQ(rx->DoctorClass()->LastName, "Hadley");
    EXPECT_EQ(rx->DrugClass()->NDC, "60731041101");
    EXPECT_EQ(rx->DrugPT, 22);
    EXPECT_TRUE(rx->Generic);

    db->Execute("UPDATE PATIENT SET LastName = 'Brennan-Shaw' WHERE PatientID = 7");
    rx->GetData();
    EXPECT_EQ(rx->PatientClass()->LastName, "Brennan-Shaw");

    rx->setDrugID(0);
    EXPECT_EQ(rx->DrugClass()->Name, "");
    EXPECT_EQ(rx->DrugPT, 0);
    EXPECT_FALSE(rx->Generic);
}

// A refill carries its original date and quantity to the original's row, not its
// refills; its own row's original columns are left alone.
TEST_P(clsPrescriptionTest, UpdatingARefillCarriesTheOriginalsDateAndQuantity) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tDate\tQty\tRefills\tOriginalRefills\tOriginalDate\t"
         "OriginalQty\n"
         "50\t600\t0\t2026-01-08 09:14:27\t30\t5\t5\t2026-01-08 00:00:00\t30\n"
         "51\t600\t1\t2026-02-08 09:14:27\t30\t4\t\t\t\n");
    const auto refill = loaded(51);
    refill->OriginalDate = at(2026, 1, 9, 15, 30);
    refill->OriginalQty = 45;
    refill->OriginalRefills = 9;
    refill->Update();
    RecordSet rs = db->OpenRecordSet(
        "SELECT OriginalDate, OriginalQty, OriginalRefills FROM RXINFO ORDER BY RXInfoID");
    EXPECT_EQ(rs.Fields(0).toDateTime(), at(2026, 1, 9));
    EXPECT_EQ(rs.Fields(1).toDouble(), 45);
    EXPECT_EQ(rs.Fields(2).toInt(), 5);
    rs.MoveNext();
    EXPECT_TRUE(rs.Fields(0).isNull());
    EXPECT_TRUE(rs.Fields(1).isNull());
    EXPECT_TRUE(rs.Fields(2).isNull());
}

// A fill that is not there changes nothing, not even the change log's picture. A failed
// UPDATE is reported, and the fill still counts as updated and logs its change against
// the values last read.
TEST_P(clsPrescriptionTest, AMissingRowChangesNothingAndAFailedUpdateStillLogs) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tQty\tDate\n52\t100052\t0\t30\t"
         "2026-03-02 08:00:00\n");
    const auto rx = loaded(52);
    rx->Qty = 90;
    rx->RXInfoID = 999;
    rx->GetData();
    EXPECT_EQ(rx->Qty, 90);
    EXPECT_EQ(rx->Number, 100052);
    rx->RXInfoID = 52;
    db->failNextStatement(err::StatementError);
    rx->Update();
    EXPECT_TRUE(rx->Updated());
    EXPECT_EQ(takeReports(),
              QStringList{test::reportOf("clsPrescription:Update", err::StatementError)});
    EXPECT_EQ(db->Scalar("SELECT Qty FROM RXINFO WHERE RXInfoID = 52").toDouble(), 30);
    EXPECT_EQ(
        logChanges(),
        QStringList{"<RX_Changes><Qty Original_Value=\"30\" New_Value=\"90\"/></RX_Changes>"});
}

struct StoredTextCase {
    const char* stored;
    const char* productQualifier;
    const char* daysSupply;
};

// The getters show what a claim may carry; the row keeps the stored text.
TEST(clsPrescriptionGetters, ProductQualifierAndDaysSupplyShowWhatAClaimTakes) {
    const std::vector<StoredTextCase> cases{
        {"03", "03", "03"}, {"27", "0", "27"},    {"99", "99", "99"}, {"XX", "", "XX"},
        {"", "", ""},       {"-1", "0", "-1"},    {"26", "26", "26"}, {" 5 ", " 5 ", " 5 "},
        {"Null", "", ""},   {"null", "", "null"}, {"98", "0", "98"},
    };
    for (const StoredTextCase& c : cases) {
        SCOPED_TRACE(c.stored);
        clsPrescription rx;
        rx.setProductIDQualifier(c.stored);
        rx.setDS(c.stored);
        EXPECT_EQ(rx.ProductIDQualifier(), c.productQualifier);
        EXPECT_EQ(rx.DS(), c.daysSupply);
    }
}

TVRX_BACKENDS(clsPrescriptionTest);

}  // namespace
}  // namespace tvrx
