#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "support/ModalDriver.h"
#include "ui/ErrorScreen.h"
#include "ui/QtErrorReporter.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

namespace tvrx {
namespace {

using test::onNextModal;

class QtErrorReporterTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder.isValid());
        reporter = std::make_shared<QtErrorReporter>(folder.filePath("errors.log"));
        reporter->setEchoToStderr(false);
        reporter->setProductName("Tessivar");
    }

    void TearDown() override { mdlMain::resetSession(); }

    QList<QJsonObject> logEntries() const {
        QFile file(reporter->logPath());
        if (!file.open(QIODevice::ReadOnly)) return {};
        QList<QJsonObject> entries;
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (!line.isEmpty()) entries.append(QJsonDocument::fromJson(line).object());
        }
        return entries;
    }

    QTemporaryDir folder;
    std::shared_ptr<QtErrorReporter> reporter;
};

TEST_F(QtErrorReporterTest, ScreenShowsTheFailureAndSendsCommentsOnlyWhenAsked) {
    struct Case {
        const char* how;
        QString typed;
        bool send;  // "Send Error" when true, otherwise "Close"
        QStringList expectedComments;
    };
    const Case cases[] = {
        {"comments sent",
         "Patient Jane Roe, Lisinopril 10 mg, ACME Health",
         true,
         {"Patient Jane Roe, Lisinopril 10 mg, ACME Health"}},
        {"comments typed but closed", "Patient Jane Roe", false, {}},
        {"blank comments cannot be sent", "   ", true, {}},
    };
    for (const Case& c : cases) {
        QFile::remove(reporter->logPath());
        reporter->ReportError("Error getting price table", "200", "Debug", 40,
                              "TVRX1.mdlMain.GetPrice", "", true, false, true, true);
        auto screen = reporter->makeScreen(reporter->lastReport());
        EXPECT_EQ(screen->summary(),
                  "Error getting price table (error 200 in TVRX1.mdlMain.GetPrice)");
        EXPECT_EQ(screen->windowTitle(), "Tessivar - Error");
        screen->show();
        EXPECT_FALSE(screen->sendButton()->isEnabled()) << c.how;
        QTest::keyClicks(screen->commentsBox(), c.typed);
        QTest::mouseClick(c.send ? screen->sendButton() : screen->closeButton(), Qt::LeftButton);

        const QList<QJsonObject> entries = logEntries();
        ASSERT_EQ(entries.size(), 1 + c.expectedComments.size()) << c.how;
        EXPECT_EQ(entries.at(0).value("description").toString(), "Error getting price table");
        EXPECT_EQ(entries.at(0).value("location").toString(), "TVRX1.mdlMain.GetPrice");
        for (qsizetype i = 0; i < c.expectedComments.size(); ++i) {
            EXPECT_EQ(entries.at(1 + i).value("comments").toString(), c.expectedComments.at(i));
        }
        EXPECT_EQ(screen->isVisible(), c.typed.trimmed().isEmpty()) << c.how;
    }
}

TEST_F(QtErrorReporterTest, AFailedStepShowsTheScreenModallyOnlyWhenTheFlagIsOn) {
    mdlMain::ErrorReporter = reporter;
    for (bool show : {false, true}) {
        QFile::remove(reporter->logPath());
        reporter->setShowScreen(show);
        if (show) {
            onNextModal<ErrorScreen>([](ErrorScreen* screen) {
                EXPECT_EQ(screen->summary(), "File not found (error 53 in clsDoc:GetData)");
                QTest::keyClicks(screen->commentsBox(), "Dr. Smith's record");
                QTest::mouseClick(screen->sendButton(), Qt::LeftButton);
            });
        }
        Frame frame("clsDoc:GetData");
        frame([] { fail(err::FileNotFound); });

        const QList<QJsonObject> entries = logEntries();
        ASSERT_EQ(entries.size(), show ? 2 : 1);
        EXPECT_EQ(entries.at(0).value("number").toString(), "53");
        if (show) {
            EXPECT_EQ(entries.at(1).value("comments").toString(), "Dr. Smith's record");
        }
    }
}

}  // namespace
}  // namespace tvrx
