#include "support/DatabaseFixture.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QCoreApplication>
#include <QUrl>

namespace tvrx::test {

namespace {

QString serverUrl() {
    return qEnvironmentVariable("TVRX_TEST_PG_URL");
}

QString databaseName(const QString& suffix = {}) {
    return QStringLiteral("tvrx_test_%1%2").arg(QCoreApplication::applicationPid()).arg(suffix);
}

// Runs one statement on the server's own database.
void onServer(const QString& sql, const QVariantList& values = {}) {
    DbConnection server(serverUrl());
    server.Open();
    server.Execute(sql, values);
}

void dropDatabase(const QString& suffix = {}) {
    onServer(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(databaseName(suffix)));
}

// Creates the process's database on first use and drops it when the tests end.
class PostgresDatabase : public ::testing::Environment {
public:
    static PostgresDatabase& instance() {
        static auto* environment = static_cast<PostgresDatabase*>(
            ::testing::AddGlobalTestEnvironment(new PostgresDatabase));
        return *environment;
    }

    void ensureCreated(const QString& suffix = {}) {
        if (created_.contains(suffix)) return;
        dropDatabase(suffix);
        onServer(QStringLiteral("CREATE DATABASE %1").arg(databaseName(suffix)));
        created_.append(suffix);
    }

    void TearDown() override {
        for (const QString& suffix : created_) dropDatabase(suffix);
        created_.clear();
    }

private:
    QStringList created_;
};

QString postgresUrl(const QString& suffix) {
    QUrl url(serverUrl());
    url.setPath(QLatin1Char('/') + databaseName(suffix));
    return url.toString();
}

// Registered before the tests run, so that its TearDown drops the database at the end.
[[maybe_unused]] const bool registered = (PostgresDatabase::instance(), true);

}  // namespace

std::string backendName(const ::testing::TestParamInfo<Backend>& info) {
    return info.param == Backend::PostgreSQL ? "PostgreSQL" : "SQLite";
}

void DatabaseFixture::SetUp() {
    SessionFixture::SetUp();
    if (backend() == Backend::SQLite) {
        ASSERT_TRUE(folder_.isValid());
        connectionString_ =
            QStringLiteral("sqlite://") + folder_.filePath(QStringLiteral("pharmacy.db"));
    } else {
        if (serverUrl().isEmpty()) {
            if (qEnvironmentVariable("TVRX_REQUIRE_POSTGRES") == "1")
                FAIL() << "TVRX_REQUIRE_POSTGRES=1 but TVRX_TEST_PG_URL is unset";
            GTEST_SKIP() << "TVRX_TEST_PG_URL is unset: PostgreSQL tests skipped";
        }
        ASSERT_NO_THROW(PostgresDatabase::instance().ensureCreated());
        connectionString_ = postgresUrl({});
    }
    ASSERT_NO_THROW(db = connect());
    emptied(*db);
}

void DatabaseFixture::emptied(DbConnection& connection) const {
    if (backend() != Backend::PostgreSQL) return;
    connection.Execute(QStringLiteral("DROP SCHEMA public CASCADE"));
    connection.Execute(QStringLiteral("CREATE SCHEMA public"));
}

std::shared_ptr<DbConnection> DatabaseFixture::connectSecond() {
    QString second;
    if (backend() == Backend::SQLite) {
        second = QStringLiteral("sqlite://") + folder_.filePath(QStringLiteral("second.db"));
    } else {
        PostgresDatabase::instance().ensureCreated(QStringLiteral("_second"));
        second = postgresUrl(QStringLiteral("_second"));
    }
    auto connection = std::make_shared<DbConnection>(second);
    connection->Open();
    emptied(*connection);
    return connection;
}

void DatabaseFixture::TearDown() {
    db.reset();
    SessionFixture::TearDown();
}

std::shared_ptr<DbConnection> DatabaseFixture::connect() const {
    auto connection = std::make_shared<DbConnection>(connectionString_);
    connection->Open();
    return connection;
}

void DatabaseFixture::loseLink(DbConnection& connection) const {
    if (backend() == Backend::SQLite) {
        connection.failNextStatement(err::LostLink);
        return;
    }
    onServer(QStringLiteral("SELECT pg_terminate_backend(?)"),
             {connection.Scalar(QStringLiteral("SELECT pg_backend_pid()"))});
}

DatabaseFixture::Caught DatabaseFixture::caught(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& failure) {
        return {failure.number(), failure.description()};
    }
    return {};
}

void DatabaseFixture::createTable(const QString& ddl) {
    db->Execute(db->dialect().ddl(ddl));
}

}  // namespace tvrx::test
