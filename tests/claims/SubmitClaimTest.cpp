#include "claims/PlanRows.h"
#include "claims/Wrapper.h"
#include "prescription/clsPrescription.h"
#include "session/data/SamplePharmacy.h"
#include "session/text/ClaimNotation.h"
#include "support/ExchangeFixture.h"
#include "support/Notation.h"
#include "support/SchemaFixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

// The submission driver as a host runs it, on the claim builders' small pharmacy
// (tests/claims/pharmacy), with a scripted user and a scripted transmit wait. Each case of
// tests/claims/cases/submit-claim.json puts its RXINFO rows in colRX, changes columns of
// them first ("set": [rx, column, value]), answers the payer choice ("choose") and every
// other box with OK ("boxes": how many), and lands "answer" as the response, or presses
// ABORT when there is none. It names the result, ErrorMessage (notation), the choice
// dialogs' arguments, whether the wait ran, the Claims rows
// ([rx, Response, Reversal, OtherIns, header stored]) and the prescriptions logged.
class SubmitClaimTest : public test::ExchangeFixture<test::SchemaFixture> {
protected:
    void SetUp() override {
        ExchangeFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPrescription().setConnection(db);
        loadClaimsPharmacy();
    }

    // What one case changed goes back: the fills as loaded, no claims, no log, a new wait.
    void startCase() {
        for (const char* table : {"Claims", "LOG_RX", "RXINFO"})
            db->Execute(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
        loadClaimsPharmacy(QStringLiteral("RXINFO"));
        user->clear();
        reporter->clear();
        face = std::make_shared<ScriptedTransmitFace>();
        setTransmitFace(face);
    }

    // Lands the answer under the request's stem once the request is in the directory.
    void answerWith(const QString& notation) {
        face->beforeTick(1, [this, notation] {
            const QStringList requests = QDir(directory()).entryList({QStringLiteral("*.clm")});
            ASSERT_EQ(requests.size(), 1);
            land(QFileInfo(requests.first()).completeBaseName() + QStringLiteral(".RSP"),
                 test::notated(notation).toLatin1());
        });
    }

    QJsonArray claimRows() const {
        QJsonArray rows;
        RecordSet rs = db->OpenRecordSet(QStringLiteral(
            "SELECT RxInfoID, Response, Reversal, OtherIns, HeaderText FROM Claims ORDER BY "
            "ClaimID"));
        for (; !rs.Eof(); rs.MoveNext()) {
            rows.append(QJsonArray{rs.Fields(0).toInt(), rs.Fields(1).toInt() != 0 ? 1 : 0,
                                   rs.Fields(2).toInt() != 0 ? 1 : 0,
                                   rs.Fields(3).toInt() != 0 ? 1 : 0,
                                   !rs.Fields(4).toString().isEmpty()});
        }
        return rows;
    }

    QJsonArray logged() const {
        QJsonArray ids;
        RecordSet rs =
            db->OpenRecordSet(QStringLiteral("SELECT RXInfoID FROM LOG_RX ORDER BY RXInfoID"));
        for (; !rs.Eof(); rs.MoveNext()) ids.append(rs.Fields(0).toInt());
        return ids;
    }

    static std::string json(const QJsonValue& value) {
        const QJsonArray items = value.toArray();
        return QJsonDocument(items).toJson(QJsonDocument::Compact).toStdString();
    }

    void runCase(const QJsonObject& data) {
        for (const auto& item : data.value("set").toArray()) {
            const QJsonArray set = item.toArray();
            db->Execute(QStringLiteral("UPDATE RXINFO SET %1 = ? WHERE RXInfoID = ?")
                            .arg(set.at(1).toString()),
                        {set.at(2).toVariant(), set.at(0).toInt()});
        }
        for (const auto& choice : data.value("choose").toArray())
            user->answerChoose(choice.toInt());
        for (int i = 0; i < data.value("boxes").toInt(); ++i) user->answerMsgBox(Answer::OK);
        if (data.contains("answer")) {
            answerWith(data.value("answer").toString());
        } else {
            face->abortAfterTicks(2);
        }

        Wrapper wrapper;
        const QJsonArray ids = data.value("rx").toArray();
        for (qsizetype i = 0; i < ids.size(); ++i) {
            const auto rx = i == 0 ? wrapper.colRX()->Item(1) : wrapper.colRX()->Add();
            rx->RXInfoID = ids.at(i).toInt();
            rx->GetData();
        }
        PlanRows rows = openPlanRows(wrapper.colRX()->Item(1)->PatInsID);
        const bool result = wrapper.SubmitClaim(directory(), rows.rsPatIns, rows.rsIns,
                                                data.value("reversal").toBool());

        EXPECT_EQ(result, data.value("result").toBool());
        EXPECT_EQ(wrapper.ClaimDone, result);
        EXPECT_EQ(toNotation(wrapper.ErrorMessage()), data.value("ErrorMessage").toString());
        QJsonArray dialogs;
        for (const auto& call : user->callsOf(Kind::Choose)) dialogs.append(call.args.join(" | "));
        if (data.contains("dialogs")) {
            EXPECT_EQ(json(dialogs), json(data.value("dialogs")));
        }
        EXPECT_EQ(face->shown() > 0, data.value("sent").toBool());
        EXPECT_EQ(json(claimRows()), json(data.value("claims")));
        if (data.contains("logged")) {
            EXPECT_EQ(json(logged()), json(data.value("logged")));
        }
        QJsonArray reported;
        for (const auto& report : reporter->reports()) {
            reported.append(report.location + u' ' + report.number);
        }
        EXPECT_EQ(json(reported), json(data.value("reports")));
    }
};

QJsonArray submitCases() {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/claims/cases/submit-claim.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).array();
}

TEST_P(SubmitClaimTest, EachCaseEndsAsItSays) {
    const QJsonArray cases = submitCases();
    ASSERT_FALSE(cases.isEmpty());
    for (const auto& entry : cases) {
        const QJsonObject data = entry.toObject();
        SCOPED_TRACE(data.value("name").toString().toStdString());
        startCase();
        runCase(data);
    }
}

TVRX_BACKENDS(SubmitClaimTest);

}  // namespace
}  // namespace tvrx
