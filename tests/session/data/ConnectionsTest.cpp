#include "session/data/Catalogue.h"
#include "session/data/Connections.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"
#include "support/DatabaseFixture.h"

#include <QFileInfo>
#include <QTemporaryDir>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

const QString kTimedOut = QStringLiteral(
    "It appears that your data connection has timed out. We recommend closing Tessivar and\r\n"
    "reopening to avoid more errors of this type. ");

class ConnectionsTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        createTable("CREATE TABLE Store (Name @TEXT@, Phone @TEXT@, Email @TEXT@)");
    }
    static DbConnection& rxdb() { return mdlMain::catalogue().RxDB(); }
    QStringList assigned() const {
        QStringList result;
        for (const auto& [name, value] : reporter->assignments())
            result.append(name + QLatin1Char('=') + value);
        return result;
    }
};

TEST_P(ConnectionsTest, StartErrorsFillsTheReporterInOrder) {
    const AppConfig config = appConfig();
    // Without a folder of the host's, the application path is the library file's folder.
    const QStringList application{"ApplicationPath=" + QFileInfo(libraryFilePath()).path(),
                                  "ProductName=" + config.ProductName,
                                  "Version=" + config.versionText(), "ReporterOption=False"};
    EXPECT_TRUE(mdlMain::StartErrors());
    EXPECT_EQ(assigned(), application);

    reporter->clear();
    db->Execute("INSERT INTO Store (Name, Phone) VALUES ('Main St Pharmacy', '555-0100')");
    mdlMain::MainConnection = db;
    EXPECT_TRUE(mdlMain::StartErrors());
    const QStringList store{"StoreEMail=", "StoreName=Main St Pharmacy", "StorePhone=555-0100"};
    EXPECT_EQ(assigned(), application + store);
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TEST_P(ConnectionsTest, StartErrorsOnALostLinkShowsTheTimedOutBoxOnly) {
    mdlMain::MainConnection = db;
    db->failNextStatement(err::LostLink);
    user->answerMsgBox(Answer::OK);
    EXPECT_FALSE(mdlMain::StartErrors());
    ASSERT_EQ(user->calls().size(), 1);
    EXPECT_EQ(user->calls().at(0).args,
              QStringList({kTimedOut, "0", "information", "1", "Data Error"}));
    EXPECT_TRUE(reporter->reports().isEmpty());
    EXPECT_TRUE(reporter->assignments().isEmpty());
}

TEST_P(ConnectionsTest, StartErrorsReportsOtherFailuresAndCarriesOn) {
    db->Execute("DROP TABLE Store");
    mdlMain::MainConnection = db;
    EXPECT_TRUE(mdlMain::StartErrors());
    QStringList numbers;
    for (const auto& report : reporter->reports()) numbers.append(report.number);
    // The failed query, then the test for a row and each store property on the closed result.
    EXPECT_EQ(numbers, QStringList({"-2147217900", "3704", "3704", "3704", "3704"}));
    EXPECT_EQ(reporter->reports().at(0).location, "mdlMain:StartErrors");
    EXPECT_EQ(reporter->assignments().size(), 4);
}

TEST_P(ConnectionsTest, ConnectionReopensTheCataloguesConnectionEveryTime) {
    mdlMain::setConnection(db, "clsDoc:Connection");
    ASSERT_EQ(rxdb().State(), 1);
    EXPECT_EQ(rxdb().ConnectionString(), connectionString());
    rxdb().Execute("CREATE TEMPORARY TABLE Marker (A integer)");
    mdlMain::setConnection(connect(), "clsDoc:Connection");
    EXPECT_EQ(rxdb().State(), 1);
    EXPECT_EQ(caught([] { rxdb().Execute("SELECT A FROM Marker"); }).number, err::StatementError)
        << "a session of its own after reopening";
    EXPECT_NE(mdlMain::MainConnection, db);
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TEST_P(ConnectionsTest, PatientReopensOnlyAfterStartErrorsSucceeded) {
    const struct {
        mdlMain::ConnectionVariant variant;
        int rxdbState;
    } cases[] = {{mdlMain::ConnectionVariant::Standard, 1},
                 {mdlMain::ConnectionVariant::clsPatient, 0}};
    for (const auto& c : cases) {
        if (rxdb().State() == 1) rxdb().Close();
        auto main = connect();
        main->failNextStatement(err::LostLink);
        user->answerMsgBox(Answer::OK);
        mdlMain::setConnection(main, "clsPatient:Connection", c.variant);
        EXPECT_EQ(rxdb().State(), c.rxdbState);
    }
}

TEST_P(ConnectionsTest, CheckConnectionReopensWhatFellClosed) {
    const AppConfig config = appConfig();
    user->answerMsgBox(Answer::OK);
    EXPECT_FALSE(mdlMain::CheckConnection());
    const QString failed =
        "It appears your Data Server connection has failed. Close out of Tessivar (or Lite)\r\n"
        "and restart the application. If this problem persists contact technical support.";
    EXPECT_EQ(user->calls().at(0).args, QStringList({failed, "0", "warning", "1", config.Title}));

    mdlMain::setConnection(db, "Wrapper:Connection");
    loseLink(*db);
    EXPECT_EQ(caught([&] { db->Scalar("SELECT COUNT(*) FROM Store"); }).number, err::LostLink);
    rxdb().Close();
    EXPECT_TRUE(mdlMain::CheckConnection());
    EXPECT_EQ(db->State(), 1);
    EXPECT_EQ(rxdb().State(), 1);
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM Store").toInt(), 0);
}

TVRX_BACKENDS(ConnectionsTest);

class ConnectLookupTest : public test::SessionFixture {
protected:
    void SetUp() override {
        SessionFixture::SetUp();
        saved_ = appConfig();
        AppConfig config = saved_;
        config.LibraryFolder = folder_.path();
        config.LibraryFolderOnly = true;
        setAppConfig(config);
    }
    void TearDown() override {
        setAppConfig(saved_);
        SessionFixture::TearDown();
    }
    QTemporaryDir folder_;
    AppConfig saved_;
};

// The box comes on every call while the file is missing; once it is there it opens for reading.
TEST_F(ConnectLookupTest, MissingFileShowsTheBoxOnEveryCallThenOpensForReadingOnly) {
    for (int call = 0; call < 2; ++call) {
        user->answerMsgBox(Answer::OK);
        EXPECT_FALSE(mdlMain::ConnectLookup());
    }
    ASSERT_EQ(user->callsOf(Kind::MsgBox).size(), 2);
    EXPECT_EQ(mdlMain::lastLookupSearch().searched, QStringList{folder_.path()});
    const QString notFound =
        "Required data file, datalookup.db, not found. Contact technical support.\r\n"
        "Phone - 000-555-0199. Tessivar will not function properly.";
    EXPECT_EQ(user->calls().at(1).args,
              QStringList({notFound, "0", "critical", "1", appConfig().ProductName}));

    {
        DbConnection build(folder_.filePath("datalookup.db"));
        build.Open();
        build.Execute("PRAGMA journal_mode=DELETE");
        build.Execute("CREATE TABLE Conflict (Code TEXT, Description TEXT)");
        build.Execute("INSERT INTO Conflict VALUES ('DD', 'Drug-Drug Interaction')");
    }
    EXPECT_TRUE(mdlMain::ConnectLookup());
    EXPECT_TRUE(mdlMain::ConnectLookup());
    DbConnection& lookup = *mdlMain::LookupConnection;
    EXPECT_EQ(lookup.Scalar("Select Description From Conflict Where Code = ?", {"DD"}).toString(),
              "Drug-Drug Interaction");
    EXPECT_EQ(test::DatabaseFixture::caught([&] { lookup.Execute("DELETE FROM Conflict"); }).number,
              err::StatementError);
}

// A host's folder without the file is searched first; then the usual folders, here the
// build's data, as these tests run in the build tree.
TEST_F(ConnectLookupTest, WithoutTheFileInTheHostsFolderTheSearchGoesOn) {
    AppConfig config = appConfig();
    config.LibraryFolderOnly = false;
    setAppConfig(config);
    EXPECT_TRUE(mdlMain::ConnectLookup());
    const LibraryFile search = mdlMain::lastLookupSearch();
    EXPECT_EQ(search.searched.value(0), folder_.path());
    EXPECT_EQ(search.path, TVRX_BINARY_DIR "/data/datalookup.db");
}

}  // namespace
}  // namespace tvrx
