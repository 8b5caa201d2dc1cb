#include "claims/PlanRows.h"
#include "claims/Wrapper.h"
#include "responses/ResponseFixture.h"
#include "responses/ResponseJson.h"
#include "session/data/SamplePharmacy.h"
#include "support/ExchangeFixture.h"
#include "support/RunningSwitch.h"
#include "support/SchemaFixture.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

namespace tvrx {
namespace {

// Claims built by the library from a pharmacy's rows, sent through the exchange directory
// to tvrx-switch running as a second program with a payer file, and read back by
// ParseClaimFile. A steps file lists the submissions in order, all against one history:
// the prescriptions (RXInfoIDs) of one transmission, whether it goes to the other payer
// or is a reversal, the response file the simulator writes, and per prescription what its
// response object (the other one for the other payer) received and decoded and what its
// row holds afterwards. The amounts there are worked out by hand from the plans' pricing.
// A step {"restart": true} stops the program and starts it again on the same history. No
// failure is reported unless a step names it ("reports": ["label number"]).
//
// Two pharmacies: the one of tests/apps/round-trip (every layout, every kind of answer,
// payers.json, steps.json) and the sample pharmacy with the sample payers
// (samples/payers/sample-pharmacy.json, sample-steps.json).
const QString kData = QStringLiteral(TVRX_SOURCE_DIR "/tests/apps/round-trip/");

QJsonArray stepsOf(const QString& name) {
    QFile file(kData + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    QJsonArray steps = QJsonDocument::fromJson(file.readAll()).array();
    EXPECT_FALSE(steps.isEmpty()) << name.toStdString();
    return steps;
}

QJsonObject rowValues(const clsPrescription& rx) {
    return {{"Price", rx.Price},         {"PAID", rx.PAID},
            {"Copay", rx.Copay},         {"PInsAmount", rx.PInsAmount},
            {"PInsCopay", rx.PInsCopay}, {"OInsAmount", rx.OInsAmount},
            {"OInsCopay", rx.OInsCopay}, {"OInsPaid", rx.OInsPaid}};
}

class RoundTripTest : public test::ExchangeFixture<test::SchemaFixture> {
protected:
    void SetUp() override {
        ExchangeFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!test::switchBuilt()) GTEST_SKIP() << "tvrx-switch is not built";
        face->tickEvery(20);
        face->abortAfterTicks(test::kSwitchWaitMs / 20);
        Wrapper().setConnection(db);
    }

    void loadRoundTripPharmacy() {
        for (const char* table :
             {"Options", "PHYSIC", "PATIENT", "INSURANCE", "PATINS", "RXINFO"}) {
            QFile file(kData + QLatin1String(table) + QStringLiteral(".tsv"));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            loadTabSeparated(*db, QLatin1String(table), QString::fromUtf8(file.readAll()));
        }
    }

    void startSwitch() {
        running_.reset();
        running_ = std::make_unique<test::RunningSwitch>(
            QStringList{"--dir", directory(), "--payers", payers_, "--history", historyPath(),
                        "--date", "20260314"});
        ASSERT_TRUE(running_->started()) << running_->errors().toStdString();
    }

    QString historyPath() const { return history_.filePath(QStringLiteral("history.db")); }

    void runSteps(const QString& payers, const QString& steps) {
        payers_ = payers;
        startSwitch();
        if (HasFatalFailure()) return;
        // The history holds names and card numbers: its owner alone may read it.
        EXPECT_EQ(QFileInfo(historyPath()).permissions(),
                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser |
                      QFileDevice::WriteUser);
        QHash<QString, QString> references;
        for (const auto& entry : stepsOf(steps)) {
            const QJsonObject step = entry.toObject();
            if (step.value("restart").toBool()) {
                EXPECT_EQ(running_->stop(), 0);
                startSwitch();
                continue;
            }
            SCOPED_TRACE(step.value("name").toString().toStdString());
            check(step, submit(step), references);
        }
    }

    void check(const QJsonObject& step, const QJsonObject& outcome,
               QHash<QString, QString>& references) {
        QJsonObject expected{{"answered", true},
                             {"parsed", true},
                             {"ErrorMessage", QString()},
                             {"reports", step.value("reports").toArray()},
                             {"prescriptions", step.value("expect")}};
        if (step.contains("response")) expected.insert("response", step.value("response"));
        EXPECT_EQ(test::jsonDifferences(expected, outcome, test::Members::Named), QString());
        const QString reference =
            outcome.value("prescriptions")[0].toObject().value("Reference").toString();
        if (step.contains("keepReference")) {
            references.insert(step.value("keepReference").toString(), reference);
        }
        if (step.contains("sameReferenceAs")) {
            EXPECT_EQ(reference, references.value(step.value("sameReferenceAs").toString()));
            EXPECT_FALSE(reference.trimmed().isEmpty());
        }
    }

    // One transmission as a host sends it: the header and the bodies, or a reversal, then
    // the exchange, and the answer read into the prescriptions.
    QJsonObject submit(const QJsonObject& step) {
        const bool other = step.value("other").toBool();
        Wrapper wrapper;
        wrapper.setcolRX(std::make_shared<colRX>());
        for (const auto& id : step.value("rx").toArray()) {
            const auto rx = wrapper.colRX()->Add();
            rx->RXInfoID = id.toInt();
            rx->GetData();
        }
        const colRX::Pointer first = wrapper.colRX()->Item(1);
        PlanRows rows = openPlanRows(first->PatInsID);
        QString text;
        if (step.value("reversal").toBool()) {
            text = first->BuildReverseClaim(rows.rsIns, other);
        } else {
            text = wrapper.BuildHeader(rows.rsPatIns, rows.rsIns, other);
            for (const auto& rx : *wrapper.colRX()) text += rx->BuildClaim(rows.rsIns, other);
        }
        bool parsed = false;
        QByteArray answerBytes;
        const bool answered =
            wrapper.ExchangeClaimFile(directory(), text, [&](const QString& path) {
                answerBytes = contents(path);
                parsed = wrapper.ParseClaimFile(path, other);
            });
        QJsonArray prescriptions;
        for (const auto& rx : *wrapper.colRX()) {
            const clsClaimResponse& answer = other ? *rx->OtherResponse() : *rx->Response();
            QJsonObject outcome = responseJson(answer);
            outcome.insert("claim", toNotation(answer.Claim));
            clsPrescription stored;
            stored.RXInfoID = rx->RXInfoID;
            stored.GetData();
            outcome.insert("row", rowValues(stored));
            prescriptions.append(outcome);
        }
        QJsonArray reports;
        for (const ErrorReport& report : reporter->reports()) {
            reports.append(report.location + u' ' + report.number);
        }
        reporter->clear();
        return {{"answered", answered},
                {"reports", reports},
                {"response", toNotation(QString::fromLatin1(answerBytes))},
                {"parsed", parsed},
                {"ErrorMessage", wrapper.ErrorMessage()},
                {"prescriptions", prescriptions}};
    }

    std::unique_ptr<test::RunningSwitch> running_;
    QTemporaryDir history_;
    QString payers_;
};

TEST_P(RoundTripTest, EveryLayoutIsAnsweredAsThePlansSay) {
    loadRoundTripPharmacy();
    runSteps(kData + QStringLiteral("payers.json"), QStringLiteral("steps.json"));
}

TEST_P(RoundTripTest, TheSamplePayersAnswerTheSamplePharmacy) {
    ASSERT_TRUE(loadSamplePharmacy(*db).loaded);
    runSteps(QStringLiteral(TVRX_SOURCE_DIR "/samples/payers/sample-pharmacy.json"),
             QStringLiteral("sample-steps.json"));
}

TVRX_BACKENDS(RoundTripTest);

}  // namespace
}  // namespace tvrx
