#pragma once

#include "claims/DirectoryWatch.h"

#include <QString>
#include <QTimer>

#include <cstdio>
#include <functional>

namespace tvrx::sw {

// Stands in for the transmission program: collects each complete request (.clm) that
// appears in the exchange directory and answers it with a response (.RSP) of the same
// stem, from the answering function (prepared answers chosen by rules, or the payer
// simulator).
//
// A request is collected by renaming it to a hidden name in one step, so a request that
// the library withdraws at that moment is either collected whole or not at all. The
// response is written under a temporary name and renamed into place. Only then is the
// collected request deleted: if anything fails on the way, it stays under its hidden
// name and the log says so.
class Switch {
public:
    // The response to a request, and what the log line says about it.
    struct Reply {
        QByteArray response;
        QString note;
    };
    using Answering = std::function<Reply(const QByteArray& request)>;

    Switch(QString directory, Answering answer, unsigned responseMode, std::FILE* log);

    // Answers the requests already waiting, then watches. False when the directory cannot
    // be watched for events; a poll each second finds the requests then.
    bool start();

private:
    void take(const QString& name);
    void logLine(const QString& text);
    void logProblem(const QString& text);
    QString pathOf(const QString& name) const;

    QString directory_;
    Answering answer_;
    unsigned responseMode_;
    std::FILE* log_;
    DirectoryWatch watch_;
    QTimer poll_;
};

}  // namespace tvrx::sw
