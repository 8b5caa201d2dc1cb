#include "responses/ResponseFixture.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tvrx {
namespace {

// Every shipped sample decodes to the values written down for it in
// tests/responses/expected/<sample>.json, with this test's Reject table.
std::vector<QString> sampleNames() {
    std::vector<QString> names;
    const QDir samples(QStringLiteral(TVRX_SOURCE_DIR "/samples/responses"));
    for (const QFileInfo& file : samples.entryInfoList({QStringLiteral("*.txt")}, QDir::Files)) {
        names.push_back(file.completeBaseName());
    }
    return names;
}

QJsonObject expectedOutcome(const QString& name) {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/responses/expected/") + name + ".json");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << "no expected values for " << name.toStdString();
    return QJsonDocument::fromJson(file.readAll()).object();
}

class SampleResponsesTest : public test::ResponseFixture,
                            public ::testing::WithParamInterface<QString> {};

TEST_P(SampleResponsesTest, DecodesEveryValue) {
    clsClaimResponse response;
    const bool result = decode(response, sample(GetParam()));
    EXPECT_EQ(test::jsonDifferences(expectedOutcome(GetParam()), outcome(response, result)),
              QString());
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleResponsesTest, ::testing::ValuesIn(sampleNames()),
                         [](const ::testing::TestParamInfo<QString>& sampleInfo) {
                             std::string name = sampleInfo.param.toStdString();
                             for (char& c : name) c = c == '-' ? '_' : c;
                             return name;
                         });

}  // namespace
}  // namespace tvrx
