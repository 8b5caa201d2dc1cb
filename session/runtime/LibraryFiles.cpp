#include "session/runtime/LibraryFiles.h"

#include "session/runtime/AppConfig.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>
#include <link.h>

namespace tvrx {

namespace {

// The running program, with every symbolic link resolved.
QString programFilePath() {
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
}

// The data folder as seen from the folder an installed file lies in.
QString installedData(const QString& file, const char* relative) {
    if (file.isEmpty()) return {};
    return QDir::cleanPath(QFileInfo(file).path() + QLatin1Char('/') + QLatin1String(relative));
}

bool insideBuildTree(const QString& file) {
    const QString tree = QFileInfo(QStringLiteral(TVRX_BUILD_TREE)).canonicalFilePath();
    return !file.isEmpty() && !tree.isEmpty() && file.startsWith(tree + QLatin1Char('/'));
}

}  // namespace

QString libraryFilePath() {
    Dl_info info{};
    link_map* map = nullptr;
    if (::dladdr1(reinterpret_cast<void*>(&libraryFilePath), &info, reinterpret_cast<void**>(&map),
                  RTLD_DL_LINKMAP) == 0) {
        return {};
    }
    // For code linked into the program the loader names the program as it was started,
    // which need not be a path; the system's own link to it always is.
    if (map == nullptr || map->l_name == nullptr || map->l_name[0] == '\0')
        return programFilePath();
    return QFileInfo(QFile::decodeName(map->l_name)).canonicalFilePath();
}

QStringList libraryFolders() {
    const AppConfig config = appConfig();
    QStringList folders;
    if (!config.LibraryFolder.isEmpty()) folders.append(config.LibraryFolder);
    if (config.LibraryFolderOnly) return folders;
    const QString library = libraryFilePath();
    folders.append(installedData(library, TVRX_LIBDIR_TO_DATA));
    folders.append(installedData(programFilePath(), TVRX_BINDIR_TO_DATA));
    if (insideBuildTree(library)) folders.append(QStringLiteral(TVRX_BUILD_DATA_DIR));
    folders.append(QStringLiteral(TVRX_DATA_DIR));
    folders.removeAll(QString());
    folders.removeDuplicates();
    return folders;
}

LibraryFile findLibraryFile(const QString& name) {
    LibraryFile file;
    file.searched = libraryFolders();
    for (const QString& folder : file.searched) {
        const QString path = QDir(folder).filePath(name);
        if (QFileInfo(path).isFile()) {
            file.path = path;
            break;
        }
    }
    return file;
}

}  // namespace tvrx
