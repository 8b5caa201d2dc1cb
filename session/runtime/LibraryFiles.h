#pragma once

#include <QString>
#include <QStringList>

namespace tvrx {

// Where the library finds its own files (the lookup database), in this order:
//   1. AppConfig::LibraryFolder, when the host set it (and nowhere else when the host also
//      set LibraryFolderOnly);
//   2. share/tvrx beside the folder of the library file (../share/tvrx from lib/);
//   3. the same beside the folder of the program (../share/tvrx from bin/);
//   4. the build's data folder, only for a library that lies in its own build tree: an
//      installed library never looks into a build tree;
//   5. share/tvrx under the installation prefix the library was built for.
// A folder that comes twice is searched once. An installation moved elsewhere as a whole
// finds its files by 2 or 3.
QStringList libraryFolders();

// A library file by name: the path of the first one found, empty when none is, and the
// folders searched, for saying where the library looked.
struct LibraryFile {
    QString path;
    QStringList searched;
};
LibraryFile findLibraryFile(const QString& name);

// The file holding the library's code: the shared library, or the program it is linked
// into. Empty when the system cannot tell.
QString libraryFilePath();

}  // namespace tvrx
