#pragma once

#include "session/data/DbConnection.h"
#include "support/QtPrinters.h"
#include "support/SessionFixture.h"

#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace tvrx::test {

// One suite, run once per back end: a fresh session and an empty database for every test.
// SQLite uses a temporary file (the catalogue's RxDB reopens the same string, so never
// ":memory:"). PostgreSQL uses one database per test process, created from
// TVRX_TEST_PG_URL and dropped at exit, with its tables dropped before each test. Without
// TVRX_TEST_PG_URL the PostgreSQL instances are skipped, unless TVRX_REQUIRE_POSTGRES=1.
//
//     class MyTest : public test::DatabaseFixture {};
//     TEST_P(MyTest, Something) { db->Execute(...); }
//     TVRX_BACKENDS(MyTest);
class DatabaseFixture : public SessionFixture, public ::testing::WithParamInterface<Backend> {
public:
    // The failure a step raised: its number (0 when it raised none) and description.
    struct Caught {
        long number = 0;
        QString description;
    };
    static Caught caught(const std::function<void()>& step);

protected:
    void SetUp() override;
    void TearDown() override;

    Backend backend() const { return GetParam(); }
    // The string a host would hand over for this test's database.
    QString connectionString() const { return connectionString_; }
    // A new, open connection to this test's database.
    std::shared_ptr<DbConnection> connect() const;
    // A second, empty database beside this test's, newly connected: another file on
    // SQLite, another database of the server on PostgreSQL, emptied for each test.
    std::shared_ptr<DbConnection> connectSecond();
    // Runs schema text with the Dialect's type tokens over db.
    void createTable(const QString& ddl);
    // Makes the connection lose its link: on PostgreSQL its server process is ended from
    // another connection; SQLite has no server, so the test hook stands in.
    void loseLink(DbConnection& connection) const;

    // Open on the test's database for the whole test.
    std::shared_ptr<DbConnection> db;

private:
    void emptied(DbConnection& connection) const;

    QTemporaryDir folder_;
    QString connectionString_;
};

std::string backendName(const ::testing::TestParamInfo<Backend>& info);

}  // namespace tvrx::test

namespace tvrx {
// Test names and messages show the back end by name.
inline void PrintTo(Backend backend, std::ostream* out) {
    *out << (backend == Backend::PostgreSQL ? "PostgreSQL" : "SQLite");
}
}  // namespace tvrx

#define TVRX_BACKENDS(suite)                                                                      \
    INSTANTIATE_TEST_SUITE_P(                                                                     \
        Backends, suite, ::testing::Values(::tvrx::Backend::SQLite, ::tvrx::Backend::PostgreSQL), \
        ::tvrx::test::backendName)
