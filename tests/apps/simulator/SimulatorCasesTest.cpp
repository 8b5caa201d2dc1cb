#include "responses/ResponseFile.h"
#include "responses/ResponseFixture.h"
#include "responses/ResponseJson.h"
#include "session/runtime/Frame.h"
#include "tvrx-switch/PayerSimulator.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace tvrx {
namespace {

// The requests of tests/apps/simulator/cases.json, answered in order by the payers of
// payers.json in one history: each request is written in full, or from a template whose
// {PLACES} take the template's defaults and what the case sets. Each case names the log
// note of its answer (family and version, status and reject codes) and, for the kinds of
// answer the simulator writes, what the library's decoder makes of each response text the
// file reader cuts from it, or the whole response in notation.
QJsonObject casesFile() {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/apps/simulator/cases.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).object();
}

QString requestOf(const QJsonObject& data, const QJsonObject& testCase) {
    if (testCase.contains("request") && !testCase.contains("set")) {
        return test::notated(testCase.value("request").toString());
    }
    const QString name = testCase.value("template").toString(QStringLiteral("51"));
    QString text = data.value("templates")[name].toString();
    QJsonObject values = data.value("defaults")[name].toObject();
    const QJsonObject set = testCase.value("set").toObject();
    for (auto it = set.begin(); it != set.end(); ++it) values.insert(it.key(), it.value());
    for (auto it = values.begin(); it != values.end(); ++it) {
        text.replace(u'{' + it.key() + u'}', it.value().toString());
    }
    return test::notated(text);
}

class SimulatorCasesTest : public test::SessionFixture {
protected:
    // What the decoder makes of each response text the file reader cuts from the answer.
    static QJsonArray decoded(const QString& file) {
        const response::ResponseFile answer(file);
        QStringList texts;
        if (answer.route() == response::FileRoute::Reversal) {
            texts.append(file);
        } else {
            response::GroupCutter groups(answer);
            Frame frame("SimulatorCasesTest");
            for (int i = 1; i <= answer.claimCount(); ++i) {
                texts.append(answer.responseHeader() +
                             groups.next(frame, i, answer.claimCount()).value_or(QString()));
            }
        }
        QJsonArray list;
        for (const QString& text : texts) {
            clsClaimResponse response;
            response.Claim = text;
            EXPECT_TRUE(response.BuildResponse()) << toNotation(text).toStdString();
            list.append(responseJson(response));
        }
        return list;
    }
};

TEST_F(SimulatorCasesTest, EachRequestIsAnsweredAsThePlanSays) {
    QTemporaryDir folder;
    QString problem;
    const auto simulator = sw::PayerSimulator::start(
        QStringLiteral(TVRX_SOURCE_DIR "/tests/apps/simulator/payers.json"),
        folder.filePath(QStringLiteral("history.db")), problem);
    ASSERT_TRUE(simulator) << problem.toStdString();
    simulator->setDay(QDate(2026, 3, 14));
    const QJsonObject data = casesFile();
    const QJsonArray cases = data.value("cases").toArray();
    ASSERT_FALSE(cases.isEmpty());
    for (const auto& entry : cases) {
        const QJsonObject testCase = entry.toObject();
        SCOPED_TRACE(testCase.value("name").toString().toStdString());
        const sw::Switch::Reply reply = simulator->answer(requestOf(data, testCase).toLatin1());
        EXPECT_EQ(reply.note, testCase.value("note").toString());
        if (testCase.contains("response")) {
            EXPECT_EQ(toNotation(QString::fromLatin1(reply.response)),
                      testCase.value("response").toString());
        }
        if (!testCase.contains("decoded")) continue;
        const QString file = QString::fromLatin1(reply.response);
        EXPECT_EQ(
            test::jsonDifferences(testCase.value("decoded"), decoded(file), test::Members::Named),
            QString())
            << toNotation(file).toStdString();
    }
}

}  // namespace
}  // namespace tvrx
