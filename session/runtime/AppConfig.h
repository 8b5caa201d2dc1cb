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
    // Folder of the library's own files (the lookup database lives here).
    QString LibraryFolder;
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
