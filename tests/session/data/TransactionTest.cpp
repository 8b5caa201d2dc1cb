#include "session/data/Transaction.h"
#include "support/DatabaseFixture.h"

#include <stdexcept>

namespace tvrx {
namespace {

class TransactionTest : public test::DatabaseFixture {};

// A table made and filled inside the transaction, then whatever ends it. What was not
// committed is gone, and the connection is back to committing each statement on its own:
// a row written after it is seen at once from another connection.
TEST_P(TransactionTest, WhatIsNotCommittedIsRolledBackWhateverEndsIt) {
    createTable("CREATE TABLE Later (LaterID @INT@)");
    const struct {
        const char* what;
        std::function<void()> between;
        bool tableKept;
    } cases[] = {
        {"a statement fails", [&] { db->Execute("INSERT INTO NoSuchTable DEFAULT VALUES"); },
         false},
        {"other code throws", [] { throw std::runtime_error("not a database failure"); }, false},
        {"nothing throws", [] {}, true},
    };
    const auto other = connect();
    int later = 0;
    for (const auto& c : cases) {
        try {
            Transaction transaction(*db);
            db->Execute(db->dialect().ddl("CREATE TABLE Half (HalfID @KEY@)"));
            db->Execute("INSERT INTO Half DEFAULT VALUES");
            c.between();
            transaction.commit();
        } catch (...) {
            // What ended the transaction early; what it left is checked below.
        }
        QVariant halfRows;
        const auto read = caught([&] { halfRows = other->Scalar("SELECT COUNT(*) FROM Half"); });
        EXPECT_EQ(read.number == 0, c.tableKept)
            << c.what << ": " << read.description.toStdString();
        EXPECT_EQ(halfRows, c.tableKept ? QVariant(1) : QVariant()) << c.what;

        db->Execute("INSERT INTO Later (LaterID) VALUES (?)", {++later});
        EXPECT_EQ(other->Scalar("SELECT COUNT(*) FROM Later"), later)
            << c.what << ": the connection was left inside a transaction";
    }
}

TVRX_BACKENDS(TransactionTest);

}  // namespace
}  // namespace tvrx
