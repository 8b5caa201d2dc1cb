#pragma once

#include "session/runtime/LibraryFiles.h"

#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;

namespace mdlMain {

// Prepares the error reporter with the application's and the store's details. False
// only when the main connection has lost its link (after the "Data Error" box).
bool StartErrors();
// Opens the lookup database of reject and conflict codes if it is not open yet.
bool ConnectLookup();
// Reopens the main connection and the catalogue's connection if they have fallen closed.
bool CheckConnection();

// The lookup file's name in the library's folder.
QString lookupFileName();
// The last search for the lookup file on this thread: where it was found (empty when it
// was not) and the folders searched (none before the first search). It outlives
// resetSession(), so a host can say where the library looked after the session ended.
LibraryFile lastLookupSearch();

enum class ConnectionVariant {
    Standard,
    // clsPatient reopens the catalogue's connection only when StartErrors succeeded.
    clsPatient,
};

// The Connection property every record class and Wrapper carry: the connection becomes
// MainConnection, StartErrors runs, and the catalogue's RxDB is reopened on the same
// string. label is the owning class's failure label ("clsDoc:Connection").
void setConnection(std::shared_ptr<DbConnection> connection, const QString& label,
                   ConnectionVariant variant = ConnectionVariant::Standard);

}  // namespace mdlMain
}  // namespace tvrx
