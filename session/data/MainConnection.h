#pragma once

namespace tvrx {

class DbConnection;

namespace records {

// The session's main connection, which every record reads and writes through; a record
// used before any Connection was handed over fails with 91, as an unset object did.
DbConnection& mainConnection();

}  // namespace records
}  // namespace tvrx
