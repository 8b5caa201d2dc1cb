#include "claims/Wrapper.h"
#include "session/data/DbConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"
#include "support/ExchangeFixture.h"
#include "support/Notation.h"
#include "support/SchemaFixture.h"

#include <QTemporaryDir>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

class WrapperTest : public test::SessionFixture {};

TEST_F(WrapperTest, StartsWithOnePrescriptionUnderNoKeyAndTheLookupOpen) {
    Wrapper wrapper;
    ASSERT_EQ(wrapper.colRX()->Count(), 1);
    EXPECT_EQ(wrapper.colRX()->keyAt(1), QString());
    ASSERT_TRUE(mdlMain::LookupConnection);
    EXPECT_EQ(mdlMain::LookupConnection->State(), 1);
}

TEST_F(WrapperTest, WithoutTheLookupFileTheBoxShowsAndTheWrapperWorks) {
    QTemporaryDir empty;
    AppConfig config = appConfig();
    const AppConfig saved = config;
    config.LibraryFolder = empty.path();
    config.LibraryFolderOnly = true;
    setAppConfig(config);
    user->answerMsgBox(Answer::OK);
    Wrapper wrapper;
    setAppConfig(saved);
    EXPECT_EQ(user->callsOf(Kind::MsgBox).size(), 1);
    EXPECT_EQ(wrapper.colRX()->Count(), 1);
}

TEST_F(WrapperTest, PrintDeviceReachesTheCollectionAndANewCollectionAfterNothing) {
    Wrapper wrapper;
    wrapper.setPrintDevice(QStringLiteral("LPT1"));
    EXPECT_EQ(wrapper.colRX()->Add(QStringLiteral("rx2"))->PrintDevice, QStringLiteral("LPT1"));
    EXPECT_EQ(wrapper.colRX()->Item(1)->PrintDevice, QString()) << "added before";

    wrapper.setcolRX(nullptr);
    wrapper.setPrintDevice(QStringLiteral("LPT2"));
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, QStringLiteral("Wrapper:PrintDevice"));
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::ObjectVariableNotSet));
    EXPECT_EQ(wrapper.PrintDevice(), QStringLiteral("LPT2"));
    EXPECT_EQ(wrapper.colRX()->Count(), 0);
    EXPECT_EQ(wrapper.colRX()->PrintDevice, QStringLiteral("LPT2"));
}

TEST_F(WrapperTest, AddingUnderAKeyInUseReportsAndReturnsAPrescriptionOutsideTheCollection) {
    colRX prescriptions;
    const auto first = prescriptions.Add(QStringLiteral("Rx1"));
    const auto second = prescriptions.Add(QStringLiteral("RX1"));
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);
    EXPECT_EQ(prescriptions.Count(), 1);
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, QStringLiteral("colRX:Add"));
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::DuplicateKey));
}

TEST_F(WrapperTest, AlternateSourceNeedsItsConnectionFirst) {
    Wrapper wrapper;
    user->answerMsgBox(Answer::OK);
    wrapper.setUseAltSource(true);
    EXPECT_FALSE(mdlMain::UseAlternateSource);
    ASSERT_EQ(user->callsOf(Kind::MsgBox).size(), 1);
    EXPECT_EQ(user->callsOf(Kind::MsgBox).at(0).args,
              QStringList({"Must designate data source first", "0", "critical", "1",
                           appConfig().ProductName}));

    const auto alternate = std::make_shared<DbConnection>();
    wrapper.setAltConnection(alternate);
    wrapper.setUseAltSource(true);
    EXPECT_EQ(mdlMain::AlternateConnection, alternate);
    EXPECT_TRUE(mdlMain::UseAlternateSource);
    EXPECT_EQ(alternate->State(), 0) << "not opened";
}

TEST_F(WrapperTest, ClaimRecordWithoutAConnectionIsReported) {
    Wrapper wrapper;
    wrapper.AddClaimRecord(1, false, false, false, QStringLiteral("x"), QString());
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, QStringLiteral("Wrapper:AddClaimRecord"));
}

class ClaimRecordTest : public test::ExchangeFixture<test::SchemaFixture> {};

TEST_P(ClaimRecordTest, RowsKeepTheTextsFlagsAndServerTimeAndAnAbortWithdrawsNone) {
    Wrapper wrapper;
    wrapper.setConnection(db);
    const QString body = test::notated("<FS>C2O'BRIEN'S<RS>AM07");
    const QString header = test::notated("<STX>610066'51B1");
    wrapper.AddClaimRecord(12, false, true, false, body, header);
    wrapper.AddClaimRecord(13, true, false, true, QStringLiteral("it's paid"), QString());
    face->abortAfterTicks(1);
    EXPECT_FALSE(wrapper.ExchangeClaimFile(directory(), header + body));

    RecordSet rows = db->OpenRecordSet(QStringLiteral(
        "SELECT RxInfoID, Response, Reversal, OtherIns, ClaimText, HeaderText, ClaimDateTime "
        "FROM Claims ORDER BY RxInfoID"));
    const QList<QVariantList> expected{{12, 0, 1, 0, body, header},
                                       {13, 1, 0, 1, QStringLiteral("it's paid"), QString()}};
    for (const QVariantList& row : expected) {
        ASSERT_FALSE(rows.Eof());
        for (int column = 0; column < row.size(); ++column) {
            EXPECT_EQ(rows.Fields(column).toString(), row[column].toString()) << column;
        }
        const QDateTime stamped = rows.Fields(6).toDateTime();
        EXPECT_LT(qAbs(stamped.secsTo(QDateTime::currentDateTime())), 300) << "server time";
        rows.MoveNext();
    }
    EXPECT_TRUE(rows.Eof());
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TVRX_BACKENDS(ClaimRecordTest);

}  // namespace
}  // namespace tvrx
