#include "responses/ResponseFixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace tvrx {
namespace {

// The boundary cases of each layout, kept in tests/responses/cases/<layout>.json. A case
// decodes its texts one after the other on one object ("@name" is a shipped sample) and
// names the values it expects afterwards; the result is True and no box or report appears
// unless it says otherwise. "lookup" makes the lookup database "missing", "empty" or
// "no-table" first. Every shipped sample is also a case of its own, decoded alone, whose
// every value is written down in tests/responses/expected/<sample>.json.
struct ResponseCase {
    std::string label;
    QJsonObject data;
    bool whole = false;  // every member of the outcome is expected, not only those named
};

void PrintTo(const ResponseCase& responseCase, std::ostream* out) {
    *out << responseCase.data.value(QStringLiteral("name")).toString().toStdString();
}

QJsonDocument jsonFile(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QJsonDocument::fromJson(file.readAll());
}

QFileInfoList filesIn(const char* folder, const QString& pattern) {
    return QDir(QStringLiteral(TVRX_SOURCE_DIR) + folder).entryInfoList({pattern}, QDir::Files);
}

std::vector<ResponseCase> responseCases() {
    std::vector<ResponseCase> cases;
    for (const QFileInfo& info : filesIn("/tests/responses/cases", QStringLiteral("*.json"))) {
        const QJsonArray list = jsonFile(info.filePath()).array();
        for (qsizetype i = 0; i < list.size(); ++i) {
            const std::string label = info.completeBaseName().toStdString();
            cases.push_back({label + "_" + std::to_string(i + 1), list.at(i).toObject()});
        }
    }
    for (const QFileInfo& info : filesIn("/samples/responses", QStringLiteral("*.txt"))) {
        const QString name = info.completeBaseName();
        const QJsonObject data{
            {QStringLiteral("name"), name},
            {QStringLiteral("texts"), QJsonArray{QLatin1Char('@') + name}},
            {QStringLiteral("expect"),
             jsonFile(QStringLiteral(TVRX_SOURCE_DIR "/tests/responses/expected/") + name +
                      QStringLiteral(".json"))
                 .object()}};
        cases.push_back({"sample_" + name.toStdString(), data, true});
    }
    return cases;
}

class ResponseCasesTest : public test::ResponseFixture,
                          public ::testing::WithParamInterface<ResponseCase> {
protected:
    void prepareLookup(const QString& state) {
        if (state == QLatin1String("missing")) QFile::remove(lookupPath());
        if (state == QLatin1String("empty")) writeLookup({});
        if (state == QLatin1String("no-table")) writeLookup({}, false);
    }

    static QString claimOf(const QString& entry) {
        return entry.startsWith(u'@') ? sample(entry.mid(1)) : test::notated(entry);
    }
};

TEST_P(ResponseCasesTest, DecodesAsExpected) {
    const QJsonObject& data = GetParam().data;
    SCOPED_TRACE(data.value(QStringLiteral("name")).toString().toStdString());
    prepareLookup(data.value(QStringLiteral("lookup")).toString());
    user->setPermissive(true);
    clsClaimResponse response;
    bool result = false;
    for (const auto& entry : data.value(QStringLiteral("texts")).toArray()) {
        result = decode(response, claimOf(entry.toString()));
    }
    QJsonObject expected = data.value(QStringLiteral("expect")).toObject();
    const QJsonObject unless{{QStringLiteral("result"), true},
                             {QStringLiteral("boxes"), QJsonArray()},
                             {QStringLiteral("reports"), QJsonArray()}};
    for (const QString& key : unless.keys()) {
        if (!expected.contains(key)) expected.insert(key, unless.value(key));
    }
    const auto members = GetParam().whole ? test::Members::All : test::Members::Named;
    EXPECT_EQ(test::jsonDifferences(expected, outcome(response, result), members), QString());
}

INSTANTIATE_TEST_SUITE_P(Layouts, ResponseCasesTest, ::testing::ValuesIn(responseCases()),
                         [](const ::testing::TestParamInfo<ResponseCase>& caseInfo) {
                             std::string name = caseInfo.param.label;
                             for (char& c : name) c = c == '-' ? '_' : c;
                             return name;
                         });

}  // namespace
}  // namespace tvrx
