#pragma once

#include "support/DatabaseFixture.h"
#include "support/RunningSwitch.h"
#include "support/TvrxProgram.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace tvrx::test {

// The sample pharmacy in the test's database, an exchange directory and a history for
// tvrx-switch, for tests that run the programs as a pharmacy does.
class SampleExchangeFixture : public DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!programBuilt() || !switchBuilt()) GTEST_SKIP() << "programs not built";
        ASSERT_EQ(runTvrx({"init", "--db", connectionString(), "--sample"}).exitCode, 0);
        ASSERT_TRUE(QDir().mkpath(exchange()));
    }

    QString exchange() const { return work_.filePath(QStringLiteral("exchange")); }
    QString history() const { return work_.filePath(QStringLiteral("history.db")); }

    // The switch with the sample payers.
    QStringList samplePayers() const {
        return {"--dir",     exchange(),
                "--payers",  QStringLiteral(TVRX_SOURCE_DIR "/samples/payers/sample-pharmacy.json"),
                "--history", history()};
    }

    // The runs of a JSON file of the source tree: a list of objects.
    static QJsonArray runsOf(const char* path) {
        QFile file(QStringLiteral(TVRX_SOURCE_DIR "/") + QLatin1String(path));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
        return QJsonDocument::fromJson(file.readAll()).array();
    }

    // Expects the pieces in the output, in order.
    static void expectPieces(const QJsonArray& pieces, const QString& out,
                             const std::string& what) {
        qsizetype from = 0;
        for (const QJsonValue& piece : pieces) {
            const qsizetype at = out.indexOf(piece.toString(), from);
            EXPECT_GE(at, 0) << what << ": " << piece.toString().toStdString() << "\n"
                             << out.toStdString();
            if (at >= 0) from = at + piece.toString().size();
        }
    }

private:
    QTemporaryDir work_;
};

}  // namespace tvrx::test
