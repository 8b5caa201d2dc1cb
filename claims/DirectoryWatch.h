#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace tvrx {

// Tells when files in one directory are complete, so that nobody reads half a file.
//
// A file is complete when the system reports it renamed into place or closed after
// writing; that report arrives through the event loop at once. A file whose creation was
// reported is being written until then, however long its writer pauses. A file that no
// event announced (one written over a network share, or before the watch started) is
// found by the polls instead: present() takes it when it is not empty, poll() once its size
// has held still since the previous poll.
//
// On systems without file events, or when the directory cannot be watched, only the polls
// find files.
class DirectoryWatch {
public:
    using Wanted = std::function<bool(const QString& name)>;
    using Complete = std::function<void(const QString& name)>;

    // Watches the files of directory for which wanted is true.
    DirectoryWatch(QString directory, Wanted wanted);
    // Watches the one file at path.
    explicit DirectoryWatch(const QString& path);
    ~DirectoryWatch();
    DirectoryWatch(const DirectoryWatch&) = delete;
    DirectoryWatch& operator=(const DirectoryWatch&) = delete;

    // Starts listening for the system's file events; onComplete runs for each wanted file
    // that becomes complete. False when the directory cannot be watched.
    bool start(Complete onComplete);
    void stop();
    bool watching() const { return fd_ >= 0; }

    // Handles the events the system has queued, without waiting for the event loop.
    void readEvents();

    // Whether an event announced this file and none has finished it yet.
    bool beingWritten(const QString& name) const { return writing_.contains(name); }
    // The wanted files that are there, not empty, and not being written.
    QStringList present() const;
    // The wanted files not being written whose size is not 0 and the same as at the
    // previous poll. A poll also forgets files that have gone.
    QStringList poll();

    const QString& directory() const { return directory_; }

private:
    QStringList candidates() const;
    void handleEvent(quint32 mask, const QString& name, QStringList& completed);

    QString directory_;
    QString onlyName_;
    Wanted wanted_;
    Complete onComplete_;
    int fd_ = -1;
    int watchNumber_ = -1;
    bool readingEvents_ = false;
    std::unique_ptr<QSocketNotifier> notifier_;
    QSet<QString> writing_;
    QHash<QString, qint64> polledSizes_;
};

}  // namespace tvrx
