#include "session/runtime/ErrorNumbers.h"
#include "support/ExchangeFixture.h"
#include "support/Notation.h"
#include "support/SessionFixture.h"

#include <sys/stat.h>

namespace tvrx {
namespace {

// The fixture's clock stands at 2026-03-14 09:26:53.
const QString kRequest = QStringLiteral("03140926.clm");
const QString kResponse = QStringLiteral("03140926.RSP");
const QString kTemporary = QStringLiteral(".03140926.clm.tmp");
const QString kExceeded = QStringLiteral("Exceeded time. Still looking for response ...");
const QColor kRed(255, 0, 0);

class ExchangeTest : public test::ExchangeFixture<test::SessionFixture> {
protected:
    const QString kClaim = test::notated("<STX>610066<FS>AM01");
    const QByteArray kAnswer = test::notated("<STX>610066<GS>PAID").toLatin1();
};

unsigned modeOf(const QString& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) return 0;
    return status.st_mode & 07777;
}

TEST_F(ExchangeTest, RequestGoesOutWholeUnderTheMinutesNameAndAbortWithdrawsIt) {
    for (const QString& dir : {directory(), directory() + QLatin1Char('/')}) {
        SCOPED_TRACE(dir.toStdString());
        face = std::make_shared<ScriptedTransmitFace>();
        setTransmitFace(face);
        QStringList waiting;
        unsigned mode = 0;
        QByteArray sent;
        face->beforeTick(2, [&] {
            waiting = files();
            mode = modeOf(pathOf(kRequest));
            sent = contents(pathOf(kRequest));
            land(kTemporary, "left behind by a failed write");
        });
        face->abortAfterTicks(3);

        const auto outcome = exchange(kClaim, dir);

        EXPECT_FALSE(outcome.answered);
        EXPECT_FALSE(outcome.response);
        EXPECT_EQ(waiting, QStringList{kRequest});
        EXPECT_EQ(sent, kClaim.toLatin1() + "\x03\r\n");
        EXPECT_EQ(mode, 0660u);
        EXPECT_EQ(files(), QStringList()) << "the request and the temporary file are withdrawn";
        EXPECT_EQ(face->displays().size(), 5);  // loaded, three ticks, hidden
        EXPECT_TRUE(reporter->reports().isEmpty());
    }
}

TEST_F(ExchangeTest, ResponseIsTakenAsSoonAsItLands) {
    const struct {
        const char* when;
        int landsBeforeTick;  // 0: before the exchange starts
        qint16 ticksWaited;
        bool overtime;
    } cases[] = {
        {"already there", 0, 0, false},
        {"between two seconds", 5, 4, false},
        {"after the time is exceeded", 62, 61, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.when);
        face = std::make_shared<ScriptedTransmitFace>();
        setTransmitFace(face);
        if (c.landsBeforeTick == 0) {
            land(kResponse, kAnswer);
        } else {
            face->beforeTick(c.landsBeforeTick, [&] { land(kResponse, kAnswer); });
        }

        const auto outcome = exchange(kClaim);

        EXPECT_TRUE(outcome.answered);
        EXPECT_EQ(outcome.response, kAnswer);
        EXPECT_FALSE(files().contains(kResponse)) << "the response is removed after reading";
        const auto& last = face->displays().last();
        EXPECT_FALSE(last.visible);
        EXPECT_EQ(last.tick, c.ticksWaited);
        EXPECT_EQ(last.statusColour == kRed, c.overtime);
        EXPECT_EQ(last.status == kExceeded, c.overtime);
        EXPECT_EQ(last.progress, std::min<int>(c.ticksWaited, 60));
        EXPECT_EQ(face->shown(), c.landsBeforeTick == 0 ? 0 : 1);
        QFile::remove(pathOf(kRequest));
    }
}

TEST_F(ExchangeTest, ResponseWrittenSlowlyInPlaceIsReadWhole) {
    auto writer = std::make_shared<QFile>(pathOf(kResponse));
    QList<QByteArray> pieces;
    for (const char* piece : {"<STX>610066", "<GS>PAID", "<FS>F5000123"}) {
        pieces << test::notated(piece).toLatin1();
    }
    face->beforeTick(2, [&] {
        ASSERT_TRUE(writer->open(QIODevice::WriteOnly));
        writer->write(pieces[0]);
        writer->flush();
    });
    face->beforeTick(5, [&] {
        writer->write(pieces[1]);
        writer->flush();
    });
    face->beforeTick(9, [&] {
        writer->write(pieces[2]);
        writer->close();
    });

    const auto outcome = exchange(kClaim);

    EXPECT_TRUE(outcome.answered);
    EXPECT_EQ(outcome.response, pieces.join());
    EXPECT_EQ(face->displays().last().tick, 8) << "taken when the writer closed the file";
}

TEST_F(ExchangeTest, FailedWriteIsReportedAndTheWaitRunsUntilAborted) {
    face->abortAfterTicks(3);

    const auto outcome = exchange(kClaim, pathOf(QStringLiteral("no-such-folder")));

    EXPECT_FALSE(outcome.answered);
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, QStringLiteral("Wrapper:SubmitClaim"));
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::PathNotFound));
    EXPECT_EQ(face->displays().last().tick, 3);
    EXPECT_EQ(files(), QStringList());
}

TEST_F(ExchangeTest, LateAnswerToAnAbortedExchangeAnswersTheNextOneOfTheSameMinute) {
    face->moveClock(clock);
    face->abortAfterTicks(2);
    EXPECT_FALSE(exchange(QStringLiteral("first claim")).answered);
    land(kResponse, "answer to the first claim");

    face = std::make_shared<ScriptedTransmitFace>();
    setTransmitFace(face);
    const auto outcome = exchange(QStringLiteral("second claim"));

    EXPECT_EQ(clock->now().time(), QTime(9, 26, 55));
    EXPECT_TRUE(outcome.answered);
    EXPECT_EQ(outcome.response, "answer to the first claim");
    EXPECT_EQ(face->shown(), 0);
    EXPECT_EQ(contents(pathOf(kRequest)), "second claim\x03\r\n")
        << "the second request took the same name";
}

}  // namespace
}  // namespace tvrx
