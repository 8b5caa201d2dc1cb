#pragma once

#include <QString>

namespace tvrx {

class DbConnection;

// One database transaction over a connection: begun when made, rolled back when it goes
// out of scope without commit(), so that a failure or any other exception between the two
// leaves nothing behind and the connection back in its usual one-statement-at-a-time
// state. For set-up work only (schema migrations, loading the sample pharmacy); the record
// classes run their statements one by one.
//
//     Transaction transaction(connection);
//     connection.Execute(...);
//     transaction.commit();
class Transaction {
public:
    explicit Transaction(DbConnection& connection);
    // Begun by a statement of the caller's (Dialect::beginLocked).
    Transaction(DbConnection& connection, const QString& begin);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // Fails as any statement does; the transaction then stays open and is rolled back.
    void commit();

private:
    DbConnection& connection_;
    bool open_ = true;
};

}  // namespace tvrx
