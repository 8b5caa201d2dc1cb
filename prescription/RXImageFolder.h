#pragma once

#include "prescription/RXImage.h"

#include <QString>

#include <functional>

namespace tvrx {

// The scanning component as a small image store: a folder the host chose, which stands
// for the application's directory, holds one image per prescription number, named after
// it ("100007.png"). Scanning asks the user for an image file (a file dialog on the
// desktop, a prompt on a console, a script's answer in tests) and keeps a copy, in place
// of an older image of the same number. The application's directory handed to
// GetRXImage is not used: the folder stands for it.
class RXImageFolder : public RXImage {
public:
    // Asks for the path of an image file; an empty answer stores nothing.
    using Picker = std::function<QString(const QString& prompt)>;

    // Without a picker the question goes through the session's user interaction.
    explicit RXImageFolder(QString folder, Picker picker = {});

    const QString& folder() const { return folder_; }
    const QString& connection() const { return connection_; }
    qint32 number() const { return number_; }

    void InitLibrary(const QString& connection, qint32 number) override;
    QString GetRXImage(const QString& applicationDirectory) override;
    // Fails with 53 when the chosen file is not there and with 75 when the copy cannot
    // be written.
    void ShowScanForm() override;

private:
    QString imageOf(qint32 number) const;

    QString folder_;
    Picker picker_;
    QString connection_;
    qint32 number_ = 0;
};

}  // namespace tvrx
