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
// "no-table" first.
struct ResponseCase {
    QString layout;
    qsizetype index;
    QJsonObject data;
};

void PrintTo(const ResponseCase& responseCase, std::ostream* out) {
    *out << responseCase.data.value(QStringLiteral("name")).toString().toStdString();
}

std::vector<ResponseCase> responseCases() {
    std::vector<ResponseCase> cases;
    const QDir folder(QStringLiteral(TVRX_SOURCE_DIR "/tests/responses/cases"));
    for (const QFileInfo& info : folder.entryInfoList({QStringLiteral("*.json")}, QDir::Files)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly)) continue;
        const QJsonArray list = QJsonDocument::fromJson(file.readAll()).array();
        for (qsizetype i = 0; i < list.size(); ++i) {
            cases.push_back({info.completeBaseName(), i, list.at(i).toObject()});
        }
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
        return entry.startsWith(u'@') ? sample(entry.mid(1)) : text(entry);
    }
};

TEST_P(ResponseCasesTest, DecodesAsExpected) {
    const QJsonObject& data = GetParam().data;
    SCOPED_TRACE(data.value(QStringLiteral("name")).toString().toStdString());
    prepareLookup(data.value(QStringLiteral("lookup")).toString());
    user->setPermissive(true);
    clsClaimResponse response;
    bool result = false;
    for (const QJsonValue& entry : data.value(QStringLiteral("texts")).toArray()) {
        result = decode(response, claimOf(entry.toString()));
    }
    QJsonObject expected = data.value(QStringLiteral("expect")).toObject();
    if (!expected.contains(QStringLiteral("result")))
        expected.insert(QStringLiteral("result"), true);
    if (!expected.contains(QStringLiteral("boxes")))
        expected.insert(QStringLiteral("boxes"), QJsonArray());
    if (!expected.contains(QStringLiteral("reports")))
        expected.insert(QStringLiteral("reports"), QJsonArray());
    EXPECT_EQ(test::jsonDifferences(expected, outcome(response, result), test::Members::Named),
              QString());
}

INSTANTIATE_TEST_SUITE_P(Layouts, ResponseCasesTest, ::testing::ValuesIn(responseCases()),
                         [](const ::testing::TestParamInfo<ResponseCase>& caseInfo) {
                             std::string name = caseInfo.param.layout.toStdString() + "_" +
                                                std::to_string(caseInfo.param.index + 1);
                             for (char& c : name) c = c == '-' ? '_' : c;
                             return name;
                         });

}  // namespace
}  // namespace tvrx
