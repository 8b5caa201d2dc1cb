#pragma once

#include "session/runtime/FileErrorReporter.h"
#include "session/runtime/RecordingErrorReporter.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

namespace tvrx {

class ErrorScreen;

// The desktop reporter: every report goes to the error log exactly as the file reporter
// writes it, and, when the host asks for it, the error screen is shown modally so the user
// can add comments to the log with "Send Error". The screen stays hidden unless
// setShowScreen(true) was called and a widget application is running, so an unattended
// run (a test, a batch job) never waits for a click.
class QtErrorReporter : public FileErrorReporter {
public:
    explicit QtErrorReporter(QString logPath = {});

    void ReportError(const QString& description, const QString& number, const QString& source,
                     qint32 line, const QString& location, const QString& details, bool flag1,
                     bool flag2, bool flag3, bool flag4) override;

    void setShowScreen(bool show) { showScreen_ = show; }
    bool showScreen() const { return showScreen_; }
    // Parent of the screen, normally the host's main window; may be null.
    void setParentWidget(QWidget* parent) { parent_ = parent; }

    // The last report received, for the screen and for hosts that show it elsewhere.
    const ErrorReport& lastReport() const { return last_; }
    // A screen for the report whose "Send Error" appends the comments to this log.
    std::unique_ptr<ErrorScreen> makeScreen(const ErrorReport& report);

private:
    bool canShowScreen() const;

    ErrorReport last_;
    bool showScreen_ = false;
    bool screenOpen_ = false;
    QPointer<QWidget> parent_;
};

}  // namespace tvrx
