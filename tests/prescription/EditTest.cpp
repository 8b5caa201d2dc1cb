#include "prescription/ConsoleFindRefillFace.h"
#include "prescription/PrescriptionFixture.h"
#include "prescription/ScriptedFindRefillFace.h"
#include "responses/ResponseFixture.h"
#include "responses/ResponseJson.h"
#include "session/data/Connections.h"
#include "session/data/Procedures.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "support/DataRows.h"
#include "support/ExpectedDialogs.h"

#include <QTemporaryDir>

namespace tvrx {
namespace {

using EditCase = test::KeywordCase;
using Kind = FindRefillGesture::Kind;

FindRefillGesture gestureOf(const QStringList& cells) {
    static const QMap<QString, Kind> kinds{
        {"ok", Kind::Ok},        {"dbl", Kind::DoubleClick},  {"cancel", Kind::Cancel},
        {"close", Kind::Closed}, {"find", Kind::FindAnother}, {"key", Kind::Key}};
    const Kind kind = kinds.value(cells[0]);
    const QString row = cells.value(1);
    if (kind == Kind::Key) return {kind, std::nullopt, row.toInt()};
    if (row.isEmpty()) return {kind, 0, 0};
    if (row == "-") return {kind, std::nullopt, 0};
    return {kind, row.toInt() - 1, 0};
}

class EditTest : public test::PrescriptionFixture {
protected:
    void SetUp() override {
        PrescriptionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_TRUE(folder.isValid());
        saved = appConfig();
        AppConfig config = saved;
        config.LibraryFolder = folder.path();
        setAppConfig(config);
        test::writeLookupFile(folder.filePath(mdlMain::lookupFileName()), test::testRejectRows());
        for (const test::DataRow& row : test::dataRows("edit-cases.tsv")) {
            const QString keyword = row.cells.value(0);
            if (keyword == "columns") columns = row.cells.mid(1).join(u'\t');
            if (keyword == "fill") fills += row.cells.mid(1).join(u'\t') + u'\n';
            if (keyword == "case") cases.append({row.where, {}});
            if (!cases.isEmpty()) cases.last().lines.append(row.cells);
        }
    }
    void TearDown() override {
        std::fclose(quiet);
        setAppConfig(saved);
        PrescriptionFixture::TearDown();
    }

    void arrange(const EditCase& c) {
        for (const char* table : {"RXINFO", "RPH", "LOG_RX"})
            db->Execute(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
        rows("RPH", "RPhID\tLastName\n1\tOkafor\n3\tLindqvist\n");
        loadTabSeparated(*db, "RXINFO", columns + u'\n' + fills);
        Procedures::catchUpKeyCounter(*db, "RXINFO", "RXInfoID");
        for (const QStringList& set : c.all("set")) {
            for (const QString& cell : set.mid(1))
                db->Execute(QStringLiteral("UPDATE RXINFO SET %1 = ? WHERE RXInfoID = ?")
                                .arg(cell.section(u'=', 0, 0)),
                            {cell.section(u'=', 1).toInt(), set[0].toInt()});
        }
        for (const QStringList& online : c.all("online")) {
            const auto stored = [](const QString& name) {
                if (name.size() < 2) return name;
                return *readResponseFile(QStringLiteral(TVRX_SOURCE_DIR "/samples/responses/") +
                                         name + ".txt")
                            .text;
            };
            db->Execute("UPDATE RXINFO SET OnlineResult = ?, OOnlineResult = ? WHERE RXInfoID = ?",
                        {stored(online[1]), stored(online[2]), online[0].toInt()});
        }
        user->clear();
        face = std::make_shared<ScriptedFindRefillFace>();
        setFindRefillFace(face);
        for (const QStringList& pick : c.all("pick")) face->add(gestureOf(pick));
        for (const QStringList& ask : c.all("ask")) {
            const QString kind = test::expectedDialog(ask[0]).section(u':', 0, 0);
            if (kind == "InputBox")
                user->answerInputBox(ask[2]);
            else
                user->answerMsgBox(answers.value(ask[2]));
        }
        mdlMain::FindRefillRxInfoID = c.first("stale").value(0).toInt();
    }

    // The finder on the console, answered from the case's typed lines.
    void onConsole(const QStringList& typed) {
        auto console = std::make_shared<ConsoleUserInteraction>(nullptr, quiet);
        for (const QString& line : typed) console->addAnswer(line);
        mdlMain::UserService = console;
        setFindRefillFace(std::make_shared<ConsoleFindRefillFace>(quiet));
    }

    void check(const EditCase& c, const clsPrescription& rx, bool result) {
        QStringList asked;
        QStringList dialogs;
        for (const auto& call : user->calls()) asked << test::asked(call);
        for (const QStringList& ask : c.all("ask"))
            dialogs << test::expectedDialog(ask[0], {ask[1]});
        EXPECT_EQ(asked, dialogs);
        const QStringList expect = c.first("expect");
        EXPECT_EQ(QString::number(result ? 1 : 0), expect[0]);
        EXPECT_EQ(QString::number(rx.RXInfoID), expect[1]);
        EXPECT_EQ(QString::number(rx.PrescriptionType), expect[2]);
        if (expect.size() > 3) {
            EXPECT_EQ(QString::number(rx.ClaimReady ? 1 : 0), expect[3]);
            EXPECT_EQ(QString::number(rx.OtherClaimReady ? 1 : 0), expect[4]);
        }
        if (!c.all("caption").isEmpty()) {
            QList<QStringList> captions;
            for (const auto& shown : face->shown()) captions.append({shown.caption});
            EXPECT_EQ(captions, c.all("caption"));
        }
        if (!c.all("list").isEmpty()) {
            EXPECT_EQ(face->shown().value(0).rows, c.all("list"));
        }
        EXPECT_EQ(face->pending(), 0);
        for (const QStringList& row : c.all("row")) {
            for (const QString& cell : row.mid(1)) {
                const QString select = QStringLiteral("SELECT %1 FROM RXINFO WHERE RXInfoID = ?");
                EXPECT_EQ(
                    db->Scalar(select.arg(cell.section(u'=', 0, 0)), {row[0].toInt()}).toDouble(),
                    cell.section(u'=', 1).toDouble())
                    << "fill " << row[0].toStdString() << " " << cell.toStdString();
            }
        }
        QStringList reports;
        for (const QStringList& report : c.all("report")) reports << report.join(u' ');
        EXPECT_EQ(takeReports(), reports);
    }

    QTemporaryDir folder;
    AppConfig saved;
    std::FILE* quiet = std::tmpfile();
    QString columns;
    QString fills;
    QList<EditCase> cases;
    std::shared_ptr<ScriptedFindRefillFace> face;
    const QMap<QString, Answer> answers{
        {"OK", Answer::OK}, {"Cancel", Answer::Cancel}, {"Yes", Answer::Yes}, {"No", Answer::No}};
};

TEST_P(EditTest, EachBranchOfAnEditAndOfItsRefillFinder) {
    for (const EditCase& c : cases) {
        SCOPED_TRACE(c.where);
        arrange(c);
        const QList<QStringList> console = c.all("console");
        if (!console.isEmpty()) onConsole(console[0]);
        const QStringList load = c.first("load");
        auto rx = load.isEmpty() ? std::make_unique<clsPrescription>() : loaded(load[0].toInt());
        const QStringList edit = c.first("edit");
        const bool result = rx->EditPrescription(edit[0].toInt(), edit[1].toInt(),
                                                 qint16(edit[2].toInt()), edit[3].toInt(), 0);
        if (!console.isEmpty()) mdlMain::UserService = user;
        check(c, *rx, result);
    }
}

// A generate moves the prescription to a new number; a refill of the old number is led to
// the new one, and counts on from what the generate carried over.
TEST_P(EditTest, AGenerateStartsANewNumberThatARefillOfTheOldNumberFollows) {
    arrange({});
    // The last fill was voided: its counts are taken as they stand.
    db->Execute("UPDATE RXINFO SET Voided = 1, QtyRemain = 15 WHERE RXInfoID = 3");
    clsPrescription rx;
    qint32 number = 500;
    ASSERT_TRUE(rx.GeneratePrescription(3, 950, number, 0, 4));
    rx.Update();
    EXPECT_EQ(number, 950);
    EXPECT_EQ(rx.FillMode(), QStringLiteral("REFILL "));
    const QString row = QStringLiteral(
        "SELECT Number, RefillNumber, Qty, Refills, QtyRemain, GeneratedRx, RPhID, TechID FROM "
        "RXINFO "
        "WHERE RXInfoID = ?");
    const RecordSet made = db->OpenRecordSet(row, {rx.RXInfoID});
    QStringList values;
    for (int i = 0; i < made.FieldCount(); ++i) values << made.Fields(i).toString();
    EXPECT_EQ(values.join(u' '), QStringLiteral("950 0 30 0 15 500 3 4"));

    db->Execute("UPDATE RXINFO SET QtyRemain = 60, Refills = 2, Date = ? WHERE Number = 950",
                {QDateTime(QDate(2026, 2, 1), QTime(10, 0))});
    user->answerMsgBox(Answer::Yes);
    clsPrescription refill;
    qint32 old = 500;
    EXPECT_EQ(refill.RefillPrescription(3, 0, old, 0, 0), -1);
    EXPECT_EQ(old, 950);
    EXPECT_EQ(refill.Number, 950);
    EXPECT_EQ(refill.RefillNumber, 1);
    EXPECT_EQ(test::asked(user->calls().value(0)),
              test::expectedDialog("newerNumber", {"500", "950"}));
}

// Other workstations take the next number whenever this one reads the time, so the number
// the generate chose is taken when its fill is stored: it stops with false and the object
// keeps what it held.
class NumberTakenClock : public FixedClock {
public:
    using FixedClock::FixedClock;
    std::function<void()> meanwhile;
    QDateTime now() const override {
        if (meanwhile) meanwhile();
        return FixedClock::now();
    }
};

TEST_P(EditTest, AGenerateWhoseFillCannotBeStoredEndsAtOnce) {
    arrange({});
    auto racing = std::make_shared<NumberTakenClock>(clock->now());
    racing->meanwhile = [this] {
        db->Execute(
            "INSERT INTO RXINFO (Number, RefillNumber, Deleted) SELECT MAX(Number) + 1, 0, 0 "
            "FROM RXINFO");
    };
    mdlMain::ClockService = racing;
    auto rx = loaded(4);
    qint32 number = 600;
    EXPECT_FALSE(rx->GeneratePrescription(3, 0, number));
    EXPECT_EQ(rx->RXInfoID, 4);
    EXPECT_EQ(rx->Number, 600);
    EXPECT_EQ(takeReports().size(), 1);
}

TVRX_BACKENDS(EditTest);

}  // namespace
}  // namespace tvrx
