#include "session/runtime/AppConfig.h"

#include <QDir>
#include <QStandardPaths>

#include <mutex>

namespace tvrx {

namespace {

QString defaultDataFolder() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (folder.isEmpty()) folder = QDir::homePath() + QStringLiteral("/.local/share");
    return folder + QStringLiteral("/tessivar");
}

std::mutex& configMutex() {
    static std::mutex mutex;
    return mutex;
}

AppConfig& current() {
    static AppConfig config = AppConfig::defaults();
    return config;
}

}  // namespace

QString AppConfig::versionText() const {
    return QStringLiteral("%1.%2.%3").arg(VersionMajor).arg(VersionMinor).arg(VersionRevision);
}

AppConfig AppConfig::defaults() {
    AppConfig config;
    config.VersionMajor = TVRX_VERSION_MAJOR;
    config.VersionMinor = TVRX_VERSION_MINOR;
    config.VersionRevision = TVRX_VERSION_PATCH;
    config.DataFolder = defaultDataFolder();
    return config;
}

AppConfig appConfig() {
    std::lock_guard lock(configMutex());
    return current();
}

void setAppConfig(const AppConfig& config) {
    std::lock_guard lock(configMutex());
    current() = config;
}

}  // namespace tvrx
