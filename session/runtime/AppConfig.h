#pragma once

#include <QString>

namespace tvrx {

// The application's metadata. A host sets it once at start-up; everything that shows a
// title, names the product or looks for the library's files reads it from here.
struct AppConfig {
    QString ProductName = QStringLiteral("Tessivar");
    QString Title = QStringLiteral("TV Prescription Processing DLL");
    int VersionMajor = 0;
    int VersionMinor = 0;
    int VersionRevision = 0;
    // Folder of the library's own files (the lookup database). Empty: the library looks in
    // the folders of session/runtime/LibraryFiles.h; set: it looks here first.
    QString LibraryFolder;
    // Look for the library's files in LibraryFolder alone: a host that ships its own, and
    // tests that need them missing.
    bool LibraryFolderOnly = false;
    // Folder for files the library writes (the error log).
    QString DataFolder;

    // "major.minor.revision", as the error report wants it.
    QString versionText() const;

    static AppConfig defaults();
};

// The configuration in force; a host may replace it.
AppConfig appConfig();
void setAppConfig(const AppConfig& config);

}  // namespace tvrx
