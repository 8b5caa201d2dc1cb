#include "prescription/PrescriptionFixture.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsPatient.h"
#include "responses/clsClaimResponse.h"
#include "session/ErrorNumbers.h"

namespace tvrx {
namespace {

using test::at;
using Case = test::PropertyCase<clsPrescription>;
#define P(property, written, stored, read) \
    TVRX_PROPERTY(clsPrescription, property, written, stored, read)

// A property stored under another column name, or kept behind a getter and a setter.
Case column(const char* name, std::function<void(clsPrescription&)> write, QVariant stored,
            std::function<QVariant(const clsPrescription&)> read, QVariant readBack) {
    return {QString::fromLatin1(name), std::move(write), std::move(stored), std::move(read),
            std::move(readBack)};
}

class clsPrescriptionTest : public test::PrescriptionFixture {};

// Two quotes make it 51 characters once doubled.
const QString kPatient49 = QStringLiteral("O'NEIL-D'ARCY, PATRICIA ANNE MARGARET ELIZABETHYZ");

// What a fill's row holds after Update and what GetData makes of it: dates cut to the
// minute or the day, the patient's name doubled then cut to 50, flags as -1, the
// transfer mark never written, and getters that show less than the row keeps.
TEST_P(clsPrescriptionTest, EveryColumnIsWrittenAndReadInItsOwnForm) {
    rows("RXINFO", "RXInfoID\tNumber\tRefillNumber\n40\t100040\t0\n");
    ASSERT_EQ(kPatient49.size(), 49);
    const QString patientStored = kPatient49.left(48);
    const std::vector<Case> cases{
        P(Number, 100040, 100040, 100040),
        P(RefillNumber, 0, 0, 0),
        P(LogID, 4, 4, 4),
        column(
            "Date", [](auto& rx) { rx.DateFilled = at(2026, 3, 2, 14, 35, 48); },
            at(2026, 3, 2, 14, 35), [](auto& rx) { return QVariant(rx.DateFilled); },
            at(2026, 3, 2, 14, 35)),
        P(Qty, 30.5, 30.5, 30.5),
        P(MetricQty, 30.25, 30.25, 30.25),
        P(Price, 12.6, 12.6, 12.6),
        P(RetailPrice, 14.255, 14.255, 14.255),
        P(Copay, 10, 10, 10),
        P(QtyRemain, 91.5, 91.5, 91.5),
        column(
            "DS", [](auto& rx) { rx.setDS("Null"); }, "Null",
            [](auto& rx) { return QVariant(rx.DS()); }, ""),
        P(Patient, kPatient49, patientStored, patientStored),
        column(
            "PatientID", [](auto& rx) { rx.setPatientID(7); }, 7,
            [](auto& rx) { return QVariant(rx.PatientID()); }, 7),
        P(Doctor, "O'HADLEY, SIMONE", "O'HADLEY, SIMONE", "O'HADLEY, SIMONE"),
        column(
            "MDID", [](auto& rx) { rx.setMDID(3); }, 3,
            [](auto& rx) { return QVariant(rx.MDID()); }, 3),
        P(PatInsID, 11, 11, 11),
        P(InsID, 2, 2, 2),
        P(SIG, "TAKE 1 TAB 'AS DIRECTED'", "TAKE 1 TAB 'AS DIRECTED'", "TAKE 1 TAB 'AS DIRECTED'"),
        P(Compound, 1, 1, 1),
        P(Drug, "LISINOPRIL 10MG TAB", "LISINOPRIL 10MG TAB", "LISINOPRIL 10MG TAB"),
        column(
            "DrugID", [](auto& rx) { rx.setDrugID(5); }, 5,
            [](auto& rx) { return QVariant(rx.DrugID()); }, 5),
        P(Refills, 5, 5, 5),
        P(Cost, 1.8, 1.8, 1.8),
        P(PriceTableID, 22, 22, 22),
        P(AWP, 12.6, 12.6, 12.6),
        P(PA, 1, 1, 1),
        P(PANumber, "PA'7", "PA'7", "PA'7"),
        P(DNDC, " 60731041101 ", " 60731041101 ", "60731041101"),
        P(Voided, true, -1, true),
        P(OnHold, true, -1, true),
        P(OriginalDate, at(2026, 1, 8, 9, 14), at(2026, 1, 8), at(2026, 1, 8)),
        P(OriginalQty, 30, 30, 30),
        P(OriginalRefills, 5, 5, 5),
        P(DAWField, "1", "1", "1"),
        column(
            "RPhID", [](auto& rx) { rx.RPh = 2; }, 2, [](auto& rx) { return QVariant(rx.RPh); }, 2),
        column(
            "TechID", [](auto& rx) { rx.Tech = 3; }, 3, [](auto& rx) { return QVariant(rx.Tech); },
            3),
        P(Schedule, "4", "4", "4"),
        P(Notes, "won't fit", "won't fit", "won't fit"),
        P(SigCodes, "1T PO QD", "1T PO QD", "1T PO QD"),
        P(OtherDenial, "70", "70", "70"),
        P(DURConflict, "TD", "TD", "TD"),
        P(DURIntervention, "M0", "M0", "M0"),
        P(DUROutcome, "1B", "1B", "1B"),
        P(AuthNumber, "A'1", "A'1", "A'1"),
        column(
            "Paid", [](auto& rx) { rx.PAID = 1; }, 1,
            [](auto& rx) { return QVariant::fromValue(rx.PAID); }, QVariant::fromValue<qint16>(1)),
        P(ARCharge, true, -1, true),
        column(
            "Online", [](auto& rx) { rx.OnLine = true; }, -1,
            [](auto& rx) { return QVariant(rx.OnLine); }, true),
        P(OnlineResult, "it's paid", "it's paid", "it's paid"),
        P(Diagnosis, "E11.9", "E11.9", "E11.9"),
        P(OtherPayor, 2.5, 2.5, 2.5),
        P(DenialDate, at(2026, 2, 3, 17, 5), at(2026, 2, 3), at(2026, 2, 3)),
        P(HCPC, "J1100", "J1100", "J1100"),
        P(Form, 32, 32, 32),
        P(ControlNumber, "CN-1", "CN-1", "CN-1"),
        P(Transferred, 1, QVariant(), 0),
        P(QBTxnID, "Q1", "Q1", "Q1"),
        P(PAMC, "PAMC7", "PAMC7", "PAMC7"),
        P(DURData, "DD", "DD", "DD"),
        P(OtherInsCode, "02", "02", "02"),
        P(EligibilityCode, "1", "1", "1"),
        P(OriginCode, "3", "3", "3"),
        P(LevelOfService, "0", "0", "0"),
        P(GeneratedRx, 99, 99, 99),
        P(Units, "EA", "EA", "EA"),
        P(InsData, "ID", "ID", "ID"),
        P(FormulaID, 3, 3, 3),
        P(OPatInsID, 12, 12, 12),
        P(OInsPaid, 1, 1, 1),
        P(OInsAmount, 4.4, 4.4, 4.4),
        P(OInsCopay, 1.1, 1.1, 1.1),
        P(PInsAmount, 8.8, 8.8, 8.8),
        P(PInsCopay, 2.2, 2.2, 2.2),
        column(
            "OAuthNumber", [](auto& rx) { rx.OAuthCode = "OA1"; }, "OA1",
            [](auto& rx) { return QVariant(rx.OAuthCode); }, "OA1"),
        P(OOnlineResult, "second", "second", "second"),
        P(OtherCoverage, "8", "8", "8"),
        P(OtherType, "1", "1", "1"),
        P(PaidQualifier, "07", "07", "07"),
        P(OtherDate, at(2026, 3, 1, 10, 0), at(2026, 3, 1), at(2026, 3, 1)),
        P(Deleted, 1, 1, 1),
        P(OtherIDQualifier, "03", "03", "03"),
        P(OtherID, "OID", "OID", "OID"),
        column(
            "ProductIDQualifier", [](auto& rx) { rx.setProductIDQualifier("27"); }, "27",
            [](auto& rx) { return QVariant(rx.ProductIDQualifier()); }, "0"),
        Case{"DateChanged", {}, clock->now(), {}, {}},
    };
    test::expectWriteThenRead<clsPrescription>(
        *db, "RXINFO", "RXInfoID", 40, cases,
        [](clsPrescription& rx) {
            rx.RXInfoID = 40;
            rx.Update();
        },
        [&] { return loaded(40); });
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
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
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
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
// quantity, so its own date and quantity stand in. 502 lost its original. 503 has three
// refills and more quantity remaining than three fills of its original quantity.
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
         "41\t503\t0\t2026-01-08 09:14:27\t30\t91\t3\t3\t2026-01-08 00:00:00\t30\t0\t0\n");
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
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
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
    ASSERT_EQ(reporter->reports().size(), 1) << test::reportsText(*reporter);
    const auto& report = reporter->reports().at(0);
    EXPECT_EQ(report.location, "clsPrescription:GetData");
    EXPECT_EQ(report.number, QString::number(err::TypeMismatch));
    EXPECT_EQ(report.details, "PAMC PA-42");
    EXPECT_EQ(rx.LogID, 9);
    EXPECT_EQ(rx.Qty, 30);
    EXPECT_EQ(rx.PAMC, "PA-42");
}

// A fill that is not there changes nothing, not even the change log's picture: the
// change made before is still logged against the values last read.
TEST_P(clsPrescriptionTest, AMissingRowChangesNothing) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tQty\tDate\n43\t100043\t0\t30\t"
         "2026-03-02 08:00:00\n");
    const auto rx = loaded(43);
    rx->Qty = 60;
    rx->RXInfoID = 999;
    rx->GetData();
    EXPECT_EQ(rx->Qty, 60);
    EXPECT_EQ(rx->Number, 100043);
    rx->RXInfoID = 43;
    rx->Update();
    EXPECT_EQ(
        logChanges(),
        QStringList{"<RX_Changes><Qty Original_Value=\"30\" New_Value=\"60\"/></RX_Changes>"});
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// Reading a fill reads its patient, prescriber and drug afresh; the drug's price table and
// generic flag come with it. Before any of that the contained records are empty.
TEST_P(clsPrescriptionTest, AFillReadsItsPatientPrescriberAndDrug) {
    clsPrescription fresh;
    EXPECT_EQ(fresh.PatientClass()->PatientID, 0);
    EXPECT_EQ(fresh.DoctorClass()->LastName, "");
    EXPECT_EQ(fresh.DrugClass()->Name, "");
    EXPECT_EQ(fresh.Response()->PaidStatus(), "");

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
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
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
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// A failed UPDATE is reported, and the fill still counts as updated and logs its change.
TEST_P(clsPrescriptionTest, AFailedUpdateStillMarksTheFillAndLogs) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tQty\tDate\n52\t100052\t0\t30\t"
         "2026-03-02 08:00:00\n");
    const auto rx = loaded(52);
    rx->Qty = 90;
    db->failNextStatement(err::StatementError);
    rx->Update();
    EXPECT_TRUE(rx->Updated());
    EXPECT_EQ(reporter->locations(), QStringList{"clsPrescription:Update"});
    EXPECT_EQ(db->Scalar("SELECT Qty FROM RXINFO WHERE RXInfoID = 52").toDouble(), 30);
    EXPECT_EQ(logChanges().size(), 1);
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
