#include "records/PropertyCases.h"
#include "records/clsDoc.h"
#include "records/clsPatient.h"
#include "session/data/Catalogue.h"
#include "session/data/ColumnTable.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"

namespace tvrx {
namespace {

using test::at;
using test::nulPadded;
using test::reportOf;

const QString kTimedOutText = QStringLiteral(
    "It appears your database connection has timed out. Please exit Tessivar and restart.");

class clsPatientTest : public test::RecordFixture<clsPatient, &clsPatient::PatientID> {
protected:
    clsPatientTest() : RecordFixture("NewPatient") {}
};

// Names and the first address lines come back trimmed, the rest as stored; zip codes and
// telephones come back in their display forms; dates lose their time, and a birth or
// injury date before 1700 is stored as the zero date.
TEST_P(clsPatientTest, EveryPropertyIsStoredAndReadBackInItsOwnForm) {
    const double third = QStringLiteral("0.333333333333333").toDouble();
    const test::RecordRules rules{
        {"LastName", "FirstName", "MI", "AddressLine1", "AddressLine2", "City", "State"}};
    const std::vector<test::ColumnCase> cases{
        {"ZipCode", "730725555", {}, "73072-5555"},
        {"Telephone", "5555550199", {}, "(555) 555-0199"},
        {"Fax", "(555) 555-01__", {}, ""},
        {"WorkPhone", "4055550123", {}, "(405) 555-0123"},
        {"WeightKg", 1.0 / 3, third, third},
        {"InjuryDate", at(1650, 2, 3), conv::ZeroDate(), conv::ZeroDate()},
        {"AdmitDate", at(1650, 7, 8, 9, 10)},
        {"DateChanged", {}, clock->now(), clock->now()},
    };
    clsPatient written;
    test::expectEveryColumnWrittenAndRead(*db, patientColumns(), &clsPatient::PatientID, id, rules,
                                          cases, written);
    EXPECT_EQ(written.InjuryDate, conv::ZeroDate()) << "the reset changes the object too";
    EXPECT_EQ(written.AdmitDate, at(1650, 7, 8, 9, 10));
}

// The zip code comes back padded with NUL to ten characters; written back, it loses them,
// which only the patient's own statement does: the prescriber's binds the zip code as the
// object holds it, and only the data layer keeps NUL out of the database.
TEST_P(clsPatientTest, ZipCodeIsWrittenWithoutItsNulPadding) {
    const struct {
        QString typed, read;
    } cases[] = {
        {"73072", nulPadded("73072")}, {"7307A", nulPadded("73070")}, {"73072-5555", "73072-5555"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed.toStdString());
        clsPatient patient;
        patient.PatientID = id;
        patient.ZipCode = c.typed;
        patient.Update();
        patient = loaded();
        EXPECT_EQ(patient.ZipCode, c.read);
        patient.Update();
        EXPECT_EQ(db->Scalar("SELECT ZipCode FROM PATIENT WHERE PatientID = ?", {id}).toString(),
                  QString(c.read).remove(QChar(0)));
        EXPECT_EQ(loaded().ZipCode, c.read);
    }
    clsPatient patient;
    patient.ZipCode = nulPadded("73072");
    clsDoc doc;
    doc.Zip = patient.ZipCode;
    EXPECT_EQ(patientColumns().bound(patient, patientColumns().order({"ZipCode"}).front()),
              "73072");
    EXPECT_EQ(docColumns().bound(doc, docColumns().order({"Zip"}).front()), nulPadded("73072"));
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
    EXPECT_EQ(takeReports(), QStringList({reportOf("clsPatient:GetData", err::Overflow),
                                          reportOf("clsPatient:GetData", err::TypeMismatch),
                                          reportOf("clsPatient:GetData", err::TypeMismatch)}));
    EXPECT_EQ(patient.ChargeAccount, 7);
    EXPECT_EQ(patient.FacilityID, 4);
    EXPECT_EQ(patient.MDID, 5);
    EXPECT_EQ(patient.LastName, "");
    EXPECT_EQ(patient.Telephone, "");
    EXPECT_EQ(patient.Birthdate, conv::ZeroDate());
    EXPECT_EQ(patient.WeightKg, -2.5);
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
    EXPECT_EQ(takeReports(), QStringList());
    EXPECT_EQ(patient.LastName, "Kept");

    db->failNextStatement(err::StatementError);
    patient.GetData();
    EXPECT_EQ(takeReports().value(0), reportOf("clsPatient:GetData", err::StatementError));
    EXPECT_EQ(user->calls().size(), 1);
}

// Insert keeps the new key and the dates; every other property starts empty. Delete marks
// the row, a clean one removes it.
TEST_P(clsPatientTest, InsertEmptiesTheObjectButKeepsItsDatesAndDeleteMarksOrRemoves) {
    clsPatient patient;
    patient.LastName = "Old";
    patient.WeightKg = 80;
    patient.FacilityID = 9;
    patient.Birthdate = at(1980, 5, 6);
    patient.Insert();
    EXPECT_GT(patient.PatientID, id);
    EXPECT_EQ(patient.LastName, "");
    EXPECT_EQ(patient.WeightKg, 0);
    EXPECT_EQ(patient.FacilityID, 0);
    EXPECT_EQ(patient.Birthdate, at(1980, 5, 6));

    const auto deleted = [&] {
        return db->Scalar("SELECT Deleted FROM PATIENT WHERE PatientID = ?", {id});
    };
    patient.PatientID = id;
    patient.Delete();
    EXPECT_EQ(deleted().toInt(), 1);
    patient.Delete(true);
    EXPECT_TRUE(deleted().isNull());
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
