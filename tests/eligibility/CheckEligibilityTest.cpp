#include "records/PATINS.h"
#include "records/clsPatient.h"
#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/text/ClaimNotation.h"
#include "support/ExchangeFixture.h"
#include "support/Notation.h"
#include "support/SchemaFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

// The eligibility request as a host asks for it, on the claim builders' small pharmacy
// (tests/claims/pharmacy). Each case of tests/eligibility/cases/requests.json changes
// columns ("set": [table, key, column, value]), answers the date box, and presses ABORT on
// the wait, so the request stays in the exchange directory to be read byte for byte. It
// names the request in notation (nothing when none may be written), the result, the boxes
// and the reports. The patient's telephone is read into its mask form "(254) 555-0201".
class CheckEligibilityTest : public test::ExchangeFixture<test::SchemaFixture> {
protected:
    void SetUp() override {
        ExchangeFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPatient().setConnection(db);
        loadClaimsPharmacy();
    }

    static QStringList texts(const QJsonValue& list) { return list.toVariant().toStringList(); }

    // A JSON value as the database takes it: a whole number is an integer.
    static QVariant bound(const QJsonValue& value) {
        if (value.isDouble()) return QVariant(static_cast<qlonglong>(value.toDouble()));
        return value.toVariant();
    }

    void change(const QJsonArray& sets) {
        static const QHash<QString, QString> keys{
            {"INSURANCE", "InsID"}, {"PATINS", "PatInsID"}, {"PATIENT", "PatientID"}};
        for (const auto& item : sets) {
            const QJsonArray set = item.toArray();
            const QString table = set.at(0).toString();
            db->Execute(QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3 = ?")
                            .arg(table, set.at(2).toString(), keys.value(table)),
                        {bound(set.at(3)), bound(set.at(1))});
        }
    }

    // The coverage and its patient as a host loads them, then one check.
    // A telephone the host sets on the loaded patient stands as set ("host").
    QString check(clsPatient& patient, qint32 patInsID, const QString& dir,
                  const QJsonObject& host = {}) {
        PATINS coverage;
        coverage.PatInsID = patInsID;
        coverage.GetData();
        patient.PatientID = coverage.PatientID;
        patient.GetData();
        if (host.contains("Telephone")) patient.Telephone = host.value("Telephone").toString();
        QString result = patient.CheckEligibility(coverage, dir, QStringLiteral("Report printer"),
                                                  QStringLiteral("4512345"), patInsID % 2 == 0);
        EXPECT_EQ(patient.SelectedNABP, QStringLiteral("4512345"));
        EXPECT_EQ(patient.SelectedPrinter, QStringLiteral("Report printer"));
        return result;
    }

    void runCase(const QJsonObject& data) {
        SCOPED_TRACE(data.value("name").toString().toStdString());
        user->clear();
        reporter->clear();
        face = std::make_shared<ScriptedTransmitFace>();
        face->abortAfterTicks(1);
        setTransmitFace(face);
        for (const QString& name : files()) QFile::remove(pathOf(name));
        const QStringList boxes = texts(data.value("boxes"));
        user->answerInputBox(data.value("answer").toString());
        for (qsizetype i = 0; i < boxes.size(); ++i) user->answerMsgBox(Answer::OK);

        db->Execute(QStringLiteral("BEGIN"));
        change(data.value("set").toArray());
        clsPatient patient;
        const QString result = check(patient, data.value("patins").toInt(), directory(),
                                     data.value("host").toObject());
        db->Execute(QStringLiteral("ROLLBACK"));

        EXPECT_EQ(result, data.value("result").toString());
        const QStringList expect = texts(data.value("expect"));
        if (expect.isEmpty()) {
            EXPECT_EQ(files(), QStringList());
        } else {
            // Only the request is left: the half-written file is gone, the request waits.
            EXPECT_EQ(files(), QStringList{QStringLiteral("03140926.clm")});
            const QString written =
                QString::fromLatin1(contents(pathOf(QStringLiteral("03140926.clm"))));
            EXPECT_EQ(toNotation(written),
                      toNotation(test::notated(expect.join(QString())) + QStringLiteral("\r\n")));
        }
        const auto asked = user->callsOf(Kind::InputBox);
        ASSERT_EQ(asked.size(), 1);
        EXPECT_EQ(asked.front().args.join(" | "),
                  QStringLiteral("Please enter the date of coverage in the format, 'MM/DD/YY', "
                                 "or click enter to accept today's date. | Coverate Date | "
                                 "03/14/26"));
        QStringList shown;
        for (const auto& call : user->callsOf(Kind::MsgBox)) shown.append(call.args.join(" | "));
        EXPECT_EQ(shown, boxes);
        QStringList reported;
        for (const auto& report : reporter->reports()) {
            reported.append(report.location + u' ' + report.number);
        }
        EXPECT_EQ(reported, texts(data.value("reports")));
    }
};

TEST_P(CheckEligibilityTest, RequestsByteForByte) {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/eligibility/cases/requests.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
    ASSERT_FALSE(cases.isEmpty());
    for (const auto& entry : cases) runCase(entry.toObject());
}

// The answer is read through "/" whether or not the directory ends in one, and removed
// only when it does. An answer of another transaction is read and refused, so the report
// stays out of this test.
TEST_P(CheckEligibilityTest, TheAnswerIsRemovedOnlyThroughATrailingSlash) {
    const QString answer = test::notated(QStringLiteral("<STX>51B11A<GS><RS><FS>AM21<FS>ANA<ETX>"));
    for (const bool trailing : {false, true}) {
        SCOPED_TRACE(trailing ? "with a trailing /" : "without a trailing /");
        for (const QString& name : files()) QFile::remove(pathOf(name));
        face = std::make_shared<ScriptedTransmitFace>();
        face->beforeTick(1, [&] { land(QStringLiteral("03140926.RSP"), answer.toLatin1()); });
        setTransmitFace(face);
        user->answerInputBox(QStringLiteral("3/14/26"));
        clsPatient patient;
        EXPECT_EQ(check(patient, 1, directory() + (trailing ? QStringLiteral("/") : QString())),
                  QString());
        EXPECT_EQ(patient.ErrorMessage(), QStringLiteral("Not E1 type response"));
        const QStringList left =
            trailing ? QStringList{QStringLiteral("03140926.clm")}
                     : QStringList{QStringLiteral("03140926.RSP"), QStringLiteral("03140926.clm")};
        EXPECT_EQ(files(), left);
    }
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TVRX_BACKENDS(CheckEligibilityTest);

}  // namespace
}  // namespace tvrx
