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

// Claims built by the library from the pharmacy of tests/apps/round-trip, sent through the
// exchange directory to tvrx-switch running as a second program with the payers of
// payers.json, and read back by ParseClaimFile. steps.json lists the submissions in order,
// all against one history: the prescriptions (RXInfoIDs) of one transmission, whether it
// goes to the other payer or is a reversal, and per prescription what its response object
// (the other one for the other payer) and its row hold afterwards. The amounts there are
// worked out by hand from the plans' pricing. A step {"restart": true} stops the program
// and starts it again on the same history.
const QString kData = QStringLiteral(TVRX_SOURCE_DIR "/tests/apps/round-trip/");

QJsonArray steps() {
    QFile file(kData + QStringLiteral("steps.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).array();
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
        for (const char* table :
             {"Options", "PHYSIC", "PATIENT", "INSURANCE", "PATINS", "RXINFO"}) {
            QFile file(kData + QLatin1String(table) + QStringLiteral(".tsv"));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            loadTabSeparated(*db, QLatin1String(table), QString::fromUtf8(file.readAll()));
        }
        startSwitch();
    }

    void startSwitch() {
        running_.reset();
        running_ = std::make_unique<test::RunningSwitch>(
            QStringList{"--dir", directory(), "--payers", kData + QStringLiteral("payers.json"),
                        "--history", history_.filePath(QStringLiteral("history.db"))});
        ASSERT_TRUE(running_->started()) << running_->errors().toStdString();
    }

    // One transmission as a host sends it: the header and the bodies, or a reversal, then
    // the exchange, and the answer read into the prescriptions.
    QJsonObject submit(const QJsonObject& step) {
        const bool other = step.value("other").toBool();
        Wrapper wrapper;
        wrapper.setcolRX(std::make_shared<colRX>());
        for (const QJsonValue& id : step.value("rx").toArray()) {
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
        const bool answered = wrapper.ExchangeClaimFile(
            directory(), text,
            [&](const QString& path) { parsed = wrapper.ParseClaimFile(path, other); });
        QJsonArray prescriptions;
        for (const auto& rx : *wrapper.colRX()) {
            QJsonObject outcome = responseJson(other ? *rx->OtherResponse() : *rx->Response());
            clsPrescription stored;
            stored.RXInfoID = rx->RXInfoID;
            stored.GetData();
            outcome.insert("row", rowValues(stored));
            prescriptions.append(outcome);
        }
        return {{"answered", answered},
                {"parsed", parsed},
                {"ErrorMessage", wrapper.ErrorMessage()},
                {"prescriptions", prescriptions}};
    }

    std::unique_ptr<test::RunningSwitch> running_;
    QTemporaryDir history_;
};

TEST_P(RoundTripTest, EveryLayoutIsAnsweredAsThePlansSay) {
    QHash<QString, QString> references;
    for (const QJsonValue& entry : steps()) {
        const QJsonObject step = entry.toObject();
        if (step.value("restart").toBool()) {
            EXPECT_EQ(running_->stop(), 0);
            startSwitch();
            continue;
        }
        SCOPED_TRACE(step.value("name").toString().toStdString());
        const QJsonObject outcome = submit(step);
        const QJsonObject expected{{"answered", true},
                                   {"parsed", true},
                                   {"ErrorMessage", QString()},
                                   {"prescriptions", step.value("expect")}};
        EXPECT_EQ(test::jsonDifferences(expected, outcome, test::Members::Named), QString())
            << running_->log().toStdString();
        const QString reference =
            outcome.value("prescriptions")[0].toObject().value("Reference").toString();
        if (step.contains("keepReference"))
            references.insert(step.value("keepReference").toString(), reference);
        if (step.contains("sameReferenceAs")) {
            EXPECT_EQ(reference, references.value(step.value("sameReferenceAs").toString()));
            EXPECT_FALSE(reference.trimmed().isEmpty());
        }
    }
    EXPECT_TRUE(reporter->reports().isEmpty()) << reportsJson(reporter->reports()).size();
}

TVRX_BACKENDS(RoundTripTest);

}  // namespace
}  // namespace tvrx
