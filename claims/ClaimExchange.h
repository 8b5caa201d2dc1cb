#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <functional>

namespace tvrx {

// How this workstation exchanges files with the transmission program.
struct ExchangeSettings {
    // Mode of the request files: the owner and the pharmacy's group may read and write
    // them, so a transmission program running in that group can collect them, and no other
    // account can read a claim.
    unsigned RequestMode = 0660;
};

// The settings in force; a host may replace them.
ExchangeSettings exchangeSettings();
void setExchangeSettings(const ExchangeSettings& settings);

// Reads a response while its file is still in the exchange directory.
using ResponseReader = std::function<void(const QString& responsePath)>;

// The directory and a file name joined with "/"; a directory that already ends in "/"
// gets none added.
QString exchangePath(const QString& directory, const QString& name);

// Writes bytes under temporaryPath with the given mode, forces them to the disk, and
// renames the file to path in one step, replacing any older file of that name: a reader
// watching path sees no file or the whole of it, never a part. A failed step raises the
// failure (75 for access, 76 for a missing path) after removing the temporary file.
void writeFileAtomically(const QString& path, const QString& temporaryPath, const QByteArray& bytes,
                         unsigned mode);

// The files of one exchange in the directory shared with the transmission program. Their
// stem is the time of sending to the minute, "MMDDHHMM": two exchanges in the same minute
// use the same names. The request goes out under a temporary name that starts with "."
// and does not end in ".clm", so the transmission program never takes a part of it.
//
// The steps are separate so that each caller decides what is deleted when: a claim
// withdraws its request on abort, an eligibility request only its temporary file.
class ExchangeFiles {
public:
    ExchangeFiles(QString directory, const QDateTime& at);

    const QString& directory() const { return directory_; }
    const QString& stem() const { return stem_; }
    QString requestPath() const;
    QString responsePath() const;
    QString temporaryPath() const;

    // The text, byte 3, carriage return and line feed, as one line, into the request file.
    void sendRequest(const QString& text, const ExchangeSettings& settings) const;
    // An eligibility request is no claim: its text, carriage return and line feed, without
    // the end byte, the same way into the request file.
    void sendInquiry(const QString& text, const ExchangeSettings& settings) const;
    // Removes the request if the transmission program has not collected it yet.
    void withdrawRequest() const;
    // Removes a temporary request file that a failed write left behind.
    void removeTemporary() const;
    // Removes the response once it has been read.
    void removeResponse() const;

private:
    void sendLine(QByteArray line, const ExchangeSettings& settings) const;

    QString directory_;
    QString stem_;
};

}  // namespace tvrx
