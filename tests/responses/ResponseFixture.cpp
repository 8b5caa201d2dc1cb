#include "responses/ResponseFixture.h"

#include "responses/ResponseJson.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/text/ClaimNotation.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace tvrx::test {

QList<RejectRow> testRejectRows() {
    return {
        {"70", "Product/Service Not Covered"},
        {"75", "Prior Authorization Required"},
        {"83", "Duplicate Paid/Captured Claim"},
        {"25", "M/I Prescriber ID"},
        {"EC", "M/I Compound Ingredient Component Count; Resubmit With Compound Segment"},
        {"mr", "Product Not On Formulary"},
        {"7X", "Days Supply Exceeds Plan Limitation"},
        {"M5", "Requires Manual Claim"},
        {"19 ", "M/I Days Supply"},
        {"NN", QVariant()},
        {"75", "Second row for 75, never found"},
        {QVariant(), "Row without a code"},
    };
}

void ResponseFixture::SetUp() {
    SessionFixture::SetUp();
    ASSERT_TRUE(folder_.isValid());
    saved_ = appConfig();
    AppConfig config = saved_;
    config.LibraryFolder = folder_.path();
    config.LibraryFolderOnly = true;
    setAppConfig(config);
    writeLookup(testRejectRows());
}

void ResponseFixture::TearDown() {
    setAppConfig(saved_);
    SessionFixture::TearDown();
}

QString ResponseFixture::lookupPath() const {
    return folder_.filePath(mdlMain::lookupFileName());
}

void ResponseFixture::writeLookup(const QList<RejectRow>& rows, bool withRejectTable) {
    writeLookupFile(lookupPath(), rows, withRejectTable);
}

void writeLookupFile(const QString& path, const QList<RejectRow>& rows, bool withRejectTable) {
    DbConnection build(path);
    build.Open();
    build.Execute(QStringLiteral("PRAGMA journal_mode=DELETE"));
    build.Execute(QStringLiteral("PRAGMA synchronous=OFF"));
    build.Execute(QStringLiteral("DROP TABLE IF EXISTS Reject"));
    build.Execute(
        QStringLiteral("CREATE TABLE IF NOT EXISTS Conflict (Code TEXT, Description TEXT)"));
    if (!withRejectTable) return;
    build.Execute(QStringLiteral("CREATE TABLE Reject (Code TEXT, Description TEXT)"));
    build.Execute(QStringLiteral("BEGIN"));
    for (const RejectRow& row : rows) {
        build.Execute(QStringLiteral("INSERT INTO Reject (Code, Description) VALUES (?, ?)"),
                      {row.code, row.description});
    }
    build.Execute(QStringLiteral("COMMIT"));
}

QString ResponseFixture::sample(const QString& name) {
    const NotationResult read =
        readResponseFile(QStringLiteral(TVRX_SOURCE_DIR "/samples/responses/") + name + ".txt");
    EXPECT_TRUE(read) << read.error.toStdString();
    return read.text.value_or(QString());
}

bool ResponseFixture::decode(clsClaimResponse& response, const QString& claim) {
    response.Claim = claim;
    return response.BuildResponse();
}

QJsonObject ResponseFixture::outcome(const clsClaimResponse& response, bool result) const {
    QJsonObject json = responseJson(response);
    json.insert(QStringLiteral("result"), result);
    json.insert(QStringLiteral("boxes"), boxesJson(user->calls()));
    json.insert(QStringLiteral("reports"), reportsJson(reporter->reports()));
    return json;
}

QString jsonDifferences(const QJsonValue& expected, const QJsonValue& actual, Members members,
                        const QString& path) {
    if (expected.isDouble() && actual.isDouble()) {
        if (std::abs(expected.toDouble() - actual.toDouble()) < 1e-6) return {};
    } else if (expected.isObject() && actual.isObject()) {
        const QJsonObject want = expected.toObject();
        const QJsonObject got = actual.toObject();
        QString differences;
        for (const QString& key : want.keys()) {
            differences +=
                jsonDifferences(want.value(key), got.value(key), members, path + '.' + key);
        }
        for (const QString& key : got.keys()) {
            if (members == Members::All && !want.contains(key)) {
                differences += path + '.' + key + " is not expected\n";
            }
        }
        return differences;
    } else if (expected.isArray() && actual.isArray() &&
               expected.toArray().size() == actual.toArray().size()) {
        QString differences;
        for (qsizetype i = 0; i < expected.toArray().size(); ++i) {
            differences += jsonDifferences(expected.toArray().at(i), actual.toArray().at(i),
                                           members, path + QStringLiteral("[%1]").arg(i));
        }
        return differences;
    } else if (expected == actual) {
        return {};
    }
    const auto shown = [](const QJsonValue& value) {
        return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    };
    return QStringLiteral("%1: expected %2, got %3\n").arg(path, shown(expected), shown(actual));
}

}  // namespace tvrx::test
