#include "claims/Wrapper.h"
#include "prescription/PrescriptionFixture.h"
#include "responses/ResponseFixture.h"
#include "responses/ResponseJson.h"
#include "session/data/SamplePharmacy.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace tvrx {
namespace {

// The cases of tests/claims/cases/parse-claim-file.json. Each puts its RXINFO rows, read
// back as a host reads them, in a new Wrapper's colRX in order, and has that Wrapper read
// response files one after the other. After each file it names what it expects: the
// result, the Wrapper's properties, per prescription the texts its response objects got
// and what its row holds now, the Claims rows, the boxes and the reports (none unless
// named). Texts are in the readable notation; "@name" is a response file of
// samples/response-files, "@responses/name" a decode sample of samples/responses.
QJsonArray fileCases() {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/claims/cases/parse-claim-file.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
    EXPECT_FALSE(cases.isEmpty());
    return cases;
}

QString sampleText(const QString& reference) {
    const QString folder = reference.startsWith(QLatin1String("@responses/"))
                               ? QStringLiteral("/samples/")
                               : QStringLiteral("/samples/response-files/");
    const NotationResult read =
        readResponseFile(QStringLiteral(TVRX_SOURCE_DIR) + folder + reference.mid(1) + ".txt");
    EXPECT_TRUE(read) << read.error.toStdString();
    return read.text.value_or(QString());
}

// Expected values with the samples they name written out in notation.
QJsonValue resolved(const QJsonValue& value) {
    if (value.isString() && value.toString().startsWith(u'@')) {
        return toNotation(sampleText(value.toString()));
    }
    if (value.isArray()) {
        QJsonArray items;
        for (const auto& item : value.toArray()) items.append(resolved(item));
        return items;
    }
    if (!value.isObject()) return value;
    QJsonObject members = value.toObject();
    for (auto it = members.begin(); it != members.end(); ++it) *it = resolved(*it);
    return members;
}

QJsonObject storedValues(const clsPrescription& rx) {
    return {{"Price", rx.Price},
            {"Copay", rx.Copay},
            {"AuthNumber", rx.AuthNumber},
            {"PAID", rx.PAID},
            {"OnlineResult", toNotation(rx.OnlineResult)},
            {"PInsAmount", rx.PInsAmount},
            {"PInsCopay", rx.PInsCopay},
            {"OInsAmount", rx.OInsAmount},
            {"OInsCopay", rx.OInsCopay},
            {"OAuthCode", rx.OAuthCode},
            {"OInsPaid", rx.OInsPaid},
            {"OOnlineResult", toNotation(rx.OOnlineResult)}};
}

class ParseClaimFileTest : public test::PrescriptionFixture {
protected:
    void SetUp() override {
        PrescriptionFixture::SetUp();
        user->setPermissive(true);
    }

    // The rows, filled on the day of the fixture's clock for the patient, prescriber and drug of
    // the fixture, unless they name others.
    void loadRows(const QJsonArray& rows) {
        db->Execute(QStringLiteral("DELETE FROM RXINFO"));
        db->Execute(QStringLiteral("DELETE FROM Claims"));
        for (const auto& row : rows) {
            QVariantMap values{{"PatientID", 7},
                               {"MDID", 3},
                               {"DrugID", 5},
                               {"RefillNumber", 0},
                               {"Date", "2026-03-14 09:00:00"}};
            values.insert(row.toObject().toVariantMap());
            QStringList cells;
            for (const QVariant& value : values) cells.append(value.toString());
            loadTabSeparated(*db, QStringLiteral("RXINFO"),
                             values.keys().join(u'\t') + u'\n' + cells.join(u'\t') + u'\n');
        }
    }

    QJsonArray prescriptions(Wrapper& wrapper) const {
        QJsonArray list;
        for (int i = 1; i <= wrapper.colRX()->Count(); ++i) {
            clsPrescription& rx = *wrapper.colRX()->Item(i);
            const clsClaimResponse& main = *rx.Response();
            const clsClaimResponse& other = *rx.OtherResponse();
            list.append(QJsonObject{{"claim", toNotation(main.Claim)},
                                    {"otherClaim", toNotation(other.Claim)},
                                    {"PaidStatus", main.PaidStatus()},
                                    {"otherPaidStatus", other.PaidStatus()},
                                    {"HeaderRejected", main.HeaderRejected},
                                    {"Reversal", main.Reversal},
                                    {"Message", toNotation(main.Message())},
                                    {"row", storedValues(*loaded(rx.RXInfoID))}});
        }
        return list;
    }

    QJsonArray claimRows() const {
        QJsonArray rows;
        RecordSet rs = db->OpenRecordSet(QStringLiteral(
            "SELECT RxInfoID, Response, Reversal, OtherIns, ClaimText, HeaderText FROM Claims "
            "ORDER BY ClaimID"));
        for (; !rs.Eof(); rs.MoveNext()) {
            rows.append(QJsonArray{rs.Fields(0).toInt(), rs.Fields(1).toInt(), rs.Fields(2).toInt(),
                                   rs.Fields(3).toInt(), toNotation(rs.Fields(4).toString()),
                                   rs.Fields(5).toString()});
        }
        return rows;
    }

    QJsonObject outcome(Wrapper& wrapper, bool result) {
        QJsonObject boxes{{"boxes", boxesJson(user->calls())}};
        user->clear();
        const QJsonArray reports = reportsJson(reporter->reports());
        reporter->clear();
        return {{"result", result},
                {"ErrorMessage", wrapper.ErrorMessage()},
                {"FormCode", wrapper.FormCode()},
                {"HeaderResponse", wrapper.HeaderResponse()},
                {"BelowCost", wrapper.BelowCost},
                {"prescriptions", prescriptions(wrapper)},
                {"claims", claimRows()},
                {"boxes", boxes.value("boxes")},
                {"reports", reports}};
    }

    QTemporaryDir exchange;
};

TEST_P(ParseClaimFileTest, EveryRouteOnItsOwnFiles) {
    for (const auto& entry : fileCases()) {
        const QJsonObject data = entry.toObject();
        SCOPED_TRACE(data.value("name").toString().toStdString());
        loadRows(data.value("rows").toArray());
        Wrapper wrapper;
        wrapper.setcolRX(std::make_shared<colRX>());
        for (const auto& row : data.value("rows").toArray()) {
            const auto rx = wrapper.colRX()->Add();
            rx->RXInfoID = row.toObject().value("RXInfoID").toInt();
            rx->GetData();
        }
        const QString path = exchange.filePath(QStringLiteral("03140926.RSP"));
        for (const auto& step : data.value("steps").toArray()) {
            QFile::remove(path);
            const QJsonValue file = step.toObject().value("file");
            if (!file.isNull()) {
                QFile out(path);
                ASSERT_TRUE(out.open(QIODevice::WriteOnly));
                const QString text = file.toString().startsWith(u'@')
                                         ? sampleText(file.toString())
                                         : test::notated(file.toString());
                out.write(text.toLatin1());
            }
            const bool result =
                wrapper.ParseClaimFile(path, step.toObject().value("other").toBool());
            QJsonObject expected = resolved(step.toObject().value("expect")).toObject();
            for (const char* none : {"boxes", "reports"}) {
                if (!expected.contains(none)) expected.insert(none, QJsonArray());
            }
            EXPECT_EQ(
                test::jsonDifferences(expected, outcome(wrapper, result), test::Members::Named),
                QString());
        }
    }
}

TVRX_BACKENDS(ParseClaimFileTest);

}  // namespace
}  // namespace tvrx
