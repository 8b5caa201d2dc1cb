#include "claims/ConsoleTransmitFace.h"
#include "claims/DirectoryWatch.h"
#include "claims/frmTransmit.h"
#include "session/runtime/ErrorNumbers.h"
#include "support/SessionFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <limits>

namespace tvrx {
namespace {

class TransmitWaitTest : public test::SessionFixture {};

QString readAll(std::FILE* file) {
    std::rewind(file);
    QByteArray bytes;
    char buffer[512];
    while (const size_t read = std::fread(buffer, 1, sizeof buffer, file)) {
        bytes.append(buffer, static_cast<qsizetype>(read));
    }
    return QString::fromUtf8(bytes);
}

// What the wait shows second by second is read from the console's drawing of it below.
TEST_F(TransmitWaitTest, TicksEverySecondAndReportsTheCountersOverflow) {
    frmTransmit form;
    form.Delay = 60;
    form.Form_Load();
    EXPECT_TRUE(form.Timer1.Enabled);
    EXPECT_EQ(form.Timer1.Interval, 1000);
    while (form.tickCounter() < std::numeric_limits<qint16>::max()) form.Timer1_Timer();
    EXPECT_TRUE(reporter->reports().isEmpty());
    form.Timer1_Timer();
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, QStringLiteral("frmTransmit:Timer1_Timer"));
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::Overflow));
    EXPECT_TRUE(form.visible()) << "the wait goes on";
}

TEST_F(TransmitWaitTest, ConsoleDrawsOneLiveLineOnATerminal) {
    const struct {
        int ticks;
        const char* line;
    } cases[] = {
        {0, "\r\x1b[KTransmitting Claim [--------------------] 0/60 s Looking for response ..."},
        {30, "\r\x1b[KTransmitting Claim [##########----------] 30/60 s Looking for response ..."},
        {60, "\r\x1b[KTransmitting Claim [####################] 60/60 s Looking for response ..."},
        {61,
         "\r\x1b[KTransmitting Claim [####################] 61 s "
         "\x1b[31mExceeded time. Still looking for response ...\x1b[0m"},
    };
    for (const auto& c : cases) {
        std::FILE* out = std::tmpfile();
        ConsoleTransmitFace face(out);
        face.setLive(true);
        frmTransmit form;
        form.Delay = 60;
        form.Form_Load();
        for (int tick = 0; tick < c.ticks; ++tick) form.Timer1_Timer();
        face.refresh(form);
        EXPECT_EQ(readAll(out), QString::fromUtf8(c.line));
        EXPECT_EQ(form.lblStatus.ForeColor == QColor(255, 0, 0), c.ticks > 60) << c.ticks;
        std::fclose(out);
    }
}

TEST_F(TransmitWaitTest, ConsoleWritesALineEveryTenSecondsAndCtrlCAborts) {
    std::FILE* out = std::tmpfile();
    ConsoleTransmitFace face(out);
    face.setLive(false);
    frmTransmit form;
    form.Delay = 60;
    form.Timer1.Interval = 1;
    QTimer interrupt;
    QObject::connect(&interrupt, &QTimer::timeout, [&] {
        if (form.tickCounter() >= 75) std::raise(SIGINT);
    });
    interrupt.start(1);

    form.Show(face);

    EXPECT_FALSE(form.Success);
    const QStringList lines = readAll(out).split(QLatin1Char('\n'));
    std::fclose(out);
    ASSERT_EQ(lines.size(), 10);
    EXPECT_EQ(lines[0], QStringLiteral("Transmitting Claim: 0 s, Looking for response ..."));
    EXPECT_EQ(lines[6], QStringLiteral("Transmitting Claim: 60 s, Looking for response ..."));
    EXPECT_EQ(lines[7], QStringLiteral("Transmitting Claim: 70 s, Exceeded time. Still looking "
                                       "for response ..."));
    EXPECT_TRUE(lines[8].startsWith(QStringLiteral("Transmitting Claim: aborted after 7")));
}

TEST(DirectoryWatchTest, PollTakesAnUnannouncedFileOnceItsSizeHoldsStill) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("03140926.RSP"));
    DirectoryWatch watch(path);  // not started: no file events, as on a network share
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(watch.poll().isEmpty()) << "an empty file is never complete";
    file.write("part");
    file.flush();
    EXPECT_EQ(watch.present(), QStringList{QStringLiteral("03140926.RSP")});
    EXPECT_TRUE(watch.poll().isEmpty()) << "first sight of this size";
    file.write(" and more");
    file.flush();
    EXPECT_TRUE(watch.poll().isEmpty()) << "still growing";
    EXPECT_EQ(watch.poll(), QStringList{QStringLiteral("03140926.RSP")});
}

TEST(DirectoryWatchTest, AFileAnnouncedByItsCreationIsCompleteWhenClosedOrRenamedIn) {
    QTemporaryDir folder;
    QStringList completed;
    DirectoryWatch watch(folder.path(),
                         [](const QString& name) { return name.endsWith(QStringLiteral(".clm")); });
    if (!watch.start([&](const QString& name) { completed.append(name); })) {
        GTEST_SKIP() << "no file events on this system";
    }
    QFile slow(folder.filePath(QStringLiteral("a.clm")));
    ASSERT_TRUE(slow.open(QIODevice::WriteOnly));
    slow.write("part");
    slow.flush();
    watch.readEvents();
    EXPECT_TRUE(watch.beingWritten(QStringLiteral("a.clm")));
    EXPECT_TRUE(watch.poll().isEmpty()) << "its writer may only be pausing";
    EXPECT_TRUE(watch.present().isEmpty());
    slow.close();
    QFile other(folder.filePath(QStringLiteral("b.tmp")));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.close();
    ASSERT_TRUE(other.rename(folder.filePath(QStringLiteral("b.clm"))));
    watch.readEvents();
    EXPECT_EQ(completed, QStringList({QStringLiteral("a.clm"), QStringLiteral("b.clm")}));

    // The events a stopped watch left unread are not the next watch's, in another folder.
    QFile(folder.filePath(QStringLiteral("c.clm"))).open(QIODevice::WriteOnly);
    watch.stop();
    QTemporaryDir otherFolder;
    DirectoryWatch next(otherFolder.path(), [](const QString&) { return true; });
    ASSERT_TRUE(next.start([&](const QString& name) { completed.append(name); }));
    QFile(otherFolder.filePath(QStringLiteral("d.clm"))).open(QIODevice::WriteOnly);
    next.readEvents();
    EXPECT_EQ(completed.mid(2), QStringList{QStringLiteral("d.clm")});
}

}  // namespace
}  // namespace tvrx
