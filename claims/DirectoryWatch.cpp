#include "claims/DirectoryWatch.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <cerrno>
#include <mutex>
#include <vector>

#include <unistd.h>

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#endif

namespace tvrx {

namespace {

#ifdef Q_OS_LINUX
constexpr quint32 kWatchedEvents =
    IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;

// Closing the system's file-event instance waits until the kernel has retired its watches,
// which takes a scheduling grace period: 10 to 25 ms on a busy machine, measured around
// the close() call, and every claim exchange paid it before returning with the answer.
// Removing a watch does not wait. So a watch that stops only removes its own and leaves
// the instance here for the next one; the events still queued in it belong to the old
// watch's number and are passed over.
class IdleInstances {
public:
    // An idle instance, or a new one; below 0 when none can be made.
    int take() {
        {
            std::lock_guard lock(mutex_);
            if (!idle_.empty()) {
                const int fd = idle_.back();
                idle_.pop_back();
                return fd;
            }
        }
        return ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    }
    void give(int fd) {
        std::unique_lock lock(mutex_);
        if (idle_.size() < kKept) {
            idle_.push_back(fd);
            return;
        }
        lock.unlock();
        ::close(fd);
    }

private:
    // More than a program watches at once is closed after all.
    static constexpr size_t kKept = 8;
    std::mutex mutex_;
    std::vector<int> idle_;
};

// Kept to the end of the program, which closes the instances left (and a watch that
// stops during the program's own teardown still finds this).
IdleInstances& idleInstances() {
    static auto* instances = new IdleInstances;
    return *instances;
}
#endif

}  // namespace

DirectoryWatch::DirectoryWatch(QString directory, Wanted wanted)
    : directory_(std::move(directory)), wanted_(std::move(wanted)) {}

DirectoryWatch::DirectoryWatch(const QString& path) {
    const QFileInfo file(path);
    directory_ = file.path();
    onlyName_ = file.fileName();
    wanted_ = [name = onlyName_](const QString& candidate) { return candidate == name; };
}

DirectoryWatch::~DirectoryWatch() {
    stop();
}

bool DirectoryWatch::start(Complete onComplete) {
    stop();
    onComplete_ = std::move(onComplete);
#ifdef Q_OS_LINUX
    fd_ = idleInstances().take();
    if (fd_ < 0) return false;
    watchNumber_ =
        ::inotify_add_watch(fd_, QFile::encodeName(directory_).constData(), kWatchedEvents);
    if (watchNumber_ < 0) {
        stop();
        return false;
    }
    // Without an application object there is no event loop; the owner reads the events
    // itself then.
    if (QCoreApplication::instance()) {
        notifier_ = std::make_unique<QSocketNotifier>(fd_, QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { readEvents(); });
    }
    return true;
#else
    return false;
#endif
}

void DirectoryWatch::stop() {
    if (notifier_ && readingEvents_) {
        // Called from a handler of the notifier's own signal: let it go once that returns.
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
    }
    notifier_.reset();
#ifdef Q_OS_LINUX
    if (fd_ >= 0) {
        if (watchNumber_ >= 0) ::inotify_rm_watch(fd_, watchNumber_);
        idleInstances().give(fd_);
    }
#endif
    fd_ = -1;
    watchNumber_ = -1;
    writing_.clear();
}

void DirectoryWatch::readEvents() {
#ifdef Q_OS_LINUX
    QStringList completed;
    alignas(inotify_event) char buffer[8192];
    while (fd_ >= 0) {
        const ssize_t length = ::read(fd_, buffer, sizeof buffer);
        if (length < 0 && errno == EINTR) continue;
        if (length <= 0) break;
        for (ssize_t offset = 0; offset < length;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
            const QString name = event->len > 0 ? QFile::decodeName(event->name) : QString();
            // An overflow concerns every watch; anything else of another watch is stale.
            if (event->wd == watchNumber_ || (event->mask & IN_Q_OVERFLOW))
                handleEvent(event->mask, name, completed);
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    // A handler may stop the watch; the files after that are the polls' business.
    readingEvents_ = true;
    for (const QString& name : completed) {
        if (fd_ < 0) break;
        if (onComplete_) onComplete_(name);
    }
    readingEvents_ = false;
#endif
}

void DirectoryWatch::handleEvent(quint32 mask, const QString& name, QStringList& completed) {
#ifdef Q_OS_LINUX
    if (mask & IN_Q_OVERFLOW) {
        // Events were lost: nothing is known to be in the middle of being written any more.
        writing_.clear();
        return;
    }
    if (name.isEmpty() || !wanted_(name)) return;
    if (mask & IN_CREATE) writing_.insert(name);
    if (mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) {
        writing_.remove(name);
        completed.append(name);
    }
    if (mask & (IN_DELETE | IN_MOVED_FROM)) {
        writing_.remove(name);
        polledSizes_.remove(name);
    }
#else
    Q_UNUSED(mask);
    Q_UNUSED(name);
    Q_UNUSED(completed);
#endif
}

QStringList DirectoryWatch::candidates() const {
    if (!onlyName_.isEmpty()) return {onlyName_};
    QStringList names;
    const QStringList entries =
        QDir(directory_).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : entries) {
        if (wanted_(name)) names.append(name);
    }
    return names;
}

QStringList DirectoryWatch::present() const {
    QStringList found;
    for (const QString& name : candidates()) {
        const QFileInfo file(QDir(directory_).filePath(name));
        if (!beingWritten(name) && file.isFile() && file.size() > 0) found.append(name);
    }
    return found;
}

QStringList DirectoryWatch::poll() {
    QStringList found;
    QHash<QString, qint64> sizes;
    for (const QString& name : candidates()) {
        const QFileInfo file(QDir(directory_).filePath(name));
        if (!file.isFile()) continue;
        sizes.insert(name, file.size());
        if (beingWritten(name) || file.size() == 0) continue;
        if (polledSizes_.value(name, -1) == file.size()) found.append(name);
    }
    polledSizes_ = sizes;
    return found;
}

}  // namespace tvrx
