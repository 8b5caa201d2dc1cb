#include "records/PropertyCases.h"
#include "records/clsDoc.h"
#include "records/clsPatient.h"
#include "session/Catalogue.h"
#include "session/ColumnTable.h"
#include "session/ErrorNumbers.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/SchemaFixture.h"

namespace tvrx {
namespace {

using test::at;
using test::nulPadded;
using Case = test::PropertyCase<clsPatient>;
#define P(property, written, stored, read) \
    TVRX_PROPERTY(clsPatient, property, written, stored, read)

const QString kTimedOutText = QStringLiteral(
    "It appears your database connection has timed out. Please exit Tessivar and restart.");

class clsPatientTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPatient connecting;
        connecting.setConnection(db);
        id = Procedures::newKey(*db, QStringLiteral("NewPatient"));
    }
    clsPatient loaded() const {
        clsPatient patient;
        patient.PatientID = id;
        patient.GetData();
        return patient;
    }
    QStringList reportNumbers() const {
        QStringList numbers;
        for (const auto& report : reporter->reports())
            numbers.append(report.location + QLatin1Char(' ') + report.number);
        return numbers;
    }
    qint32 id = 0;
};

// Names and the first address lines come back trimmed, the rest as stored; zip codes and
// telephones come back in their display forms; dates lose their time, and a birth or
// injury date before 1700 is stored as the zero date.
TEST_P(clsPatientTest, EveryPropertyIsStoredAndReadBackInItsOwnForm) {
    const QString digits = QStringLiteral("0.333333333333333");
    const std::vector<Case> cases{
        P(LastName, "  O'Brien  ", "  O'Brien  ", "O'Brien"),
        P(FirstName, " Mary Ann", " Mary Ann", "Mary Ann"),
        P(MI, "Q ", "Q ", "Q"),
        P(AddressLine1, " 12 Elm St ", " 12 Elm St ", "12 Elm St"),
        P(AddressLine2, "Apt 4 ", "Apt 4 ", "Apt 4"),
        P(City, " Norman", " Norman", "Norman"),
        P(State, "O'K", "O'K", "O'K"),
        P(ZipCode, "730725555", "730725555", "73072-5555"),
        P(Country, " US ", " US ", " US "),
        P(BillingAddress, "PO Box 7 ", "PO Box 7 ", "PO Box 7 "),
        P(BillingCity, "Moore", "Moore", "Moore"),
        P(BillingState, "OK", "OK", "OK"),
        P(BillingZipCode, "73160 ", "73160 ", "73160 "),
        P(Telephone, "5555550199", "5555550199", "(555) 555-0199"),
        P(Fax, "(555) 555-01__", "(555) 555-01__", ""),
        P(Gender, "F'", "F'", "F'"),
        P(Birthdate, at(1980, 5, 6, 14, 35, 10), at(1980, 5, 6), at(1980, 5, 6)),
        P(AccountNumber, "A-1'2", "A-1'2", "A-1'2"),
        P(MedicalRecordNum, "MR 77", "MR 77", "MR 77"),
        P(Unit, "3W", "3W", "3W"),
        P(Room, "301B ", "301B ", "301B "),
        P(Allergies, "Penicillin", "Penicillin", "Penicillin"),
        P(Location, "Ward 'C'", "Ward 'C'", "Ward 'C'"),
        P(WeightKg, 1.0 / 3, digits.toDouble(), digits.toDouble()),
        P(HeightCm, 172.5, 172.5, 172.5),
        P(Notes, "one\r\ntwo ", "one\r\ntwo ", "one\r\ntwo "),
        P(ChargeAccount, -1, -1, -1),
        P(ARCustomerID, 123456, 123456, 123456),
        P(ForeignSigs, "Y", "Y", "Y"),
        P(MarriageStatus, "M", "M", "M"),
        P(StudentStatus, "N", "N", "N"),
        P(WorkPhone, "4055550123", "4055550123", "(405) 555-0123"),
        P(EMail, "o'brien@example.com", "o'brien@example.com", "o'brien@example.com"),
        P(PatInsID, 77, 77, 77),
        P(PatAllID, 78, 78, 78),
        P(Conditions, "Asthma", "Asthma", "Asthma"),
        P(EasyOpen, 1, 1, 1),
        P(SSN, "123-45-6789", "123-45-6789", "123-45-6789"),
        P(PriceTableID, 3, 3, 3),
        P(AllergiesLarge, "Sulfa; latex", "Sulfa; latex", "Sulfa; latex"),
        P(Diagnosis, "J45.909", "J45.909", "J45.909"),
        P(EmployerID, 12, 12, 12),
        P(InjuryType, "Fall", "Fall", "Fall"),
        P(QBListID, "QB'1", "QB'1", "QB'1"),
        P(InjuryDate, at(1650, 2, 3), conv::ZeroDate(), conv::ZeroDate()),
        P(Spanish, 1, 1, 1),
        P(HIPPA, -1, -1, -1),
        P(AutoCharge, 1, 1, 1),
        P(FacilityID, 4, 4, 4),
        P(MDID, 5, 5, 5),
        P(AdmitDate, at(1650, 7, 8, 9, 10), at(1650, 7, 8), at(1650, 7, 8)),
        P(CCNumber, "4111 1111", "4111 1111", "4111 1111"),
        P(CCExpMonth, "07", "07", "07"),
        P(CCExpYear, "2029", "2029", "2029"),
        P(CCName, "M O'Brien", "M O'Brien", "M O'Brien"),
        P(CCAddress, "12 Elm", "12 Elm", "12 Elm"),
        P(CCZip, "7'3072", "7'3072", "7'3072"),
        P(CCAddressSame, 1, 1, 1),
        P(Pregnancy, 1, 1, 1),
        P(Smoker, 1, 1, 1),
        P(ImportID, 999, 999, 999),
        Case{"DateChanged", {}, clock->now(), {}, {}},
        Case{"Deleted", {}, 0, {}, {}},
    };
    clsPatient written;
    test::expectWriteThenRead<clsPatient>(
        *db, "PATIENT", "PatientID", id, cases,
        [&](clsPatient& patient) {
            patient.PatientID = id;
            patient.Update();
            written = patient;
        },
        [&] { return loaded(); });
    EXPECT_EQ(loaded().PatientID, id);
    EXPECT_EQ(written.InjuryDate, conv::ZeroDate()) << "the reset changes the object too";
    EXPECT_EQ(written.AdmitDate, at(1650, 7, 8, 9, 10));
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// The zip code comes back padded with NUL to ten characters; written back, it loses them.
TEST_P(clsPatientTest, ZipCodeIsWrittenWithoutItsNulPadding) {
    struct Row {
        QString typed;
        QString read;
    };
    for (const Row& row : {Row{"73072", nulPadded("73072")}, Row{"7307A", nulPadded("73070")},
                           Row{"73072-5555", "73072-5555"}}) {
        clsPatient patient;
        patient.PatientID = id;
        patient.ZipCode = row.typed;
        patient.Update();
        patient = loaded();
        EXPECT_EQ(patient.ZipCode, row.read) << row.typed.toStdString();
        patient.Update();
        EXPECT_EQ(db->Scalar("SELECT ZipCode FROM PATIENT WHERE PatientID = ?", {id}).toString(),
                  QString(row.read).remove(QChar(0)));
        EXPECT_EQ(loaded().ZipCode, row.read);
    }
}

// The patient's statement drops the NUL padding itself; the prescriber's binds the zip code
// as the object holds it, and only the data layer keeps NUL out of the database.
TEST_P(clsPatientTest, OnlyThePatientsStatementDropsTheZipCodesNul) {
    clsPatient patient;
    patient.ZipCode = nulPadded("73072");
    clsDoc doc;
    doc.Zip = patient.ZipCode;
    const auto& patients = patientColumns();
    const auto& docs = docColumns();
    EXPECT_EQ(patients.bound(patient, patients.order({"ZipCode"}).front()), "73072");
    EXPECT_EQ(docs.bound(doc, docs.order({"Zip"}).front()), nulPadded("73072"));
}

// A new row holds nulls: the converted FacilityID and MDID each cost one report and keep
// their values; every other column still reads, as its null form.
TEST_P(clsPatientTest, NullAndBadColumnsCostOneReportEachAndTheRestStillReads) {
    if (backend() == Backend::PostgreSQL)
        db->Execute("ALTER TABLE PATIENT ALTER COLUMN ChargeAccount TYPE integer");
    db->Execute("UPDATE PATIENT SET ChargeAccount = 40000, WeightKg = -2.5 WHERE PatientID = ?",
                {id});
    clsPatient patient;
    patient.PatientID = id;
    patient.LastName = "Old";
    patient.Telephone = "(555) 555-0100";
    patient.Birthdate = at(1970, 1, 1);
    patient.FacilityID = 4;
    patient.MDID = 5;
    patient.ChargeAccount = 7;
    patient.GetData();
    const QString overflow = QString::number(err::Overflow);
    const QString mismatch = QString::number(err::TypeMismatch);
    EXPECT_EQ(reportNumbers(),
              QStringList({"clsPatient:GetData " + overflow, "clsPatient:GetData " + mismatch,
                           "clsPatient:GetData " + mismatch}));
    EXPECT_EQ(patient.ChargeAccount, 7);
    EXPECT_EQ(patient.FacilityID, 4);
    EXPECT_EQ(patient.MDID, 5);
    EXPECT_EQ(patient.LastName, "");
    EXPECT_EQ(patient.Telephone, "");
    EXPECT_EQ(patient.Birthdate, conv::ZeroDate());
    EXPECT_EQ(patient.WeightKg, -2.5);
}

TEST_P(clsPatientTest, GetDataOfAMissingRowChangesNothing) {
    clsPatient patient;
    patient.PatientID = id + 100;
    patient.LastName = "Kept";
    patient.GetData();
    EXPECT_EQ(patient.LastName, "Kept");
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// A time-out shows the "Connection Failure" box and ends the load without a report, on
// the first statement; any other failure is reported and the load carries on.
TEST_P(clsPatientTest, ATimedOutLoadShowsConnectionFailureOnly) {
    db->Execute("UPDATE PATIENT SET LastName = 'Stored' WHERE PatientID = ?", {id});
    clsPatient patient;
    patient.PatientID = id;
    patient.LastName = "Kept";
    db->failNextStatement(err::TimedOut);
    user->answerMsgBox(Answer::OK);
    patient.GetData();
    ASSERT_EQ(user->calls().size(), 1);
    EXPECT_EQ(user->calls().at(0).args,
              QStringList({kTimedOutText, "0", "critical", "1", "Connection Failure"}));
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
    EXPECT_EQ(patient.LastName, "Kept");

    db->failNextStatement(err::StatementError);
    patient.GetData();
    ASSERT_FALSE(reporter->reports().isEmpty());
    EXPECT_EQ(reporter->reports().at(0).location, "clsPatient:GetData");
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::StatementError));
    EXPECT_EQ(user->calls().size(), 1);
}

// Insert keeps the new key and the dates; every other property starts empty.
TEST_P(clsPatientTest, InsertEmptiesTheObjectButKeepsItsDates) {
    clsPatient patient;
    patient.LastName = "Old";
    patient.CCZip = "73072";
    patient.WeightKg = 80;
    patient.HIPPA = 1;
    patient.FacilityID = 9;
    patient.Birthdate = at(1980, 5, 6);
    patient.Insert();
    EXPECT_GT(patient.PatientID, id);
    EXPECT_EQ(patient.LastName, "");
    EXPECT_EQ(patient.CCZip, "");
    EXPECT_EQ(patient.WeightKg, 0);
    EXPECT_EQ(patient.HIPPA, 0);
    EXPECT_EQ(patient.FacilityID, 0);
    EXPECT_EQ(patient.Birthdate, at(1980, 5, 6));
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TEST_P(clsPatientTest, DeleteMarksTheRowAndACleanDeleteRemovesIt) {
    const auto deleted = [&] {
        return db->Scalar("SELECT Deleted FROM PATIENT WHERE PatientID = ?", {id});
    };
    clsPatient patient;
    patient.PatientID = id;
    patient.Delete();
    EXPECT_EQ(deleted().toInt(), 1);
    patient.Delete(true);
    EXPECT_TRUE(deleted().isNull());
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// The patient's Connection property leaves the catalogue's connection alone when the
// store cannot be read; the other records' one reopens it regardless.
TEST_P(clsPatientTest, ConnectionLeavesTheCatalogueClosedAfterALostLink) {
    mdlMain::catalogue().RxDB().Close();
    db->failNextStatement(err::LostLink);
    user->answerMsgBox(Answer::OK);
    clsPatient patient;
    patient.setConnection(db);
    EXPECT_EQ(mdlMain::MainConnection, db);
    EXPECT_EQ(mdlMain::catalogue().RxDB().State(), 0);
    EXPECT_EQ(user->calls().at(0).title(), "Data Error");
}

TVRX_BACKENDS(clsPatientTest);

}  // namespace
}  // namespace tvrx
