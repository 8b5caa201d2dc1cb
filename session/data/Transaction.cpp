#include "session/data/Transaction.h"

#include "session/data/DbConnection.h"

namespace tvrx {

Transaction::Transaction(DbConnection& connection)
    : Transaction(connection, QStringLiteral("BEGIN")) {}

Transaction::Transaction(DbConnection& connection, const QString& begin) : connection_(connection) {
    connection_.Execute(begin);
}

Transaction::~Transaction() {
    if (!open_) return;
    try {
        connection_.Execute(QStringLiteral("ROLLBACK"));
    } catch (...) {
        // A lost link ends the transaction on the server; a destructor must not throw.
    }
}

void Transaction::commit() {
    connection_.Execute(QStringLiteral("COMMIT"));
    open_ = false;
}

}  // namespace tvrx
