#pragma once

#include <QColor>
#include <QString>

#include <memory>

class QEventLoop;

namespace tvrx {

class DirectoryWatch;
class TransmitFace;
class Wrapper;

// The wait for the transmission program's response: a small modal form with a progress
// bar that counts the seconds up to Delay, then turns its status red and keeps looking.
// There is no time-out: only the response or the user's ABORT ends the wait.
//
// The response is taken as soon as it is complete (renamed into place or closed after
// writing), and once when the wait starts if it is already there. The one-second tick
// moves the display and looks for a response that no file event announced.
//
// The form holds the state of its controls; a face (TransmitFace) draws them: a Qt
// dialog, a console line, or a test's script.
class frmTransmit {
public:
    struct Button {
        QString Caption;
    };
    struct Label {
        QString Caption;
        // Invalid: the face's usual text colour.
        QColor ForeColor;
    };
    struct ProgressBar {
        int Min = 0;
        int Max = 100;
        int Value = 0;
    };
    struct Timer {
        bool Enabled = false;
        int Interval = 1000;  // milliseconds
    };

    frmTransmit();
    ~frmTransmit();
    frmTransmit(const frmTransmit&) = delete;
    frmTransmit& operator=(const frmTransmit&) = delete;

    // Seconds until the status turns to the overtime wording; the progress bar's maximum.
    qint16 Delay = 0;
    // True when the response appeared, false when the user aborted.
    bool Success = false;
    // Kept for the host; nothing here reads them.
    bool SendingOther = false;
    Wrapper* CurrentWrapper = nullptr;

    Button cmdAbort;
    Label Label1;
    Label lblStatus;
    ProgressBar ProgressBar1;
    Timer Timer1;

    // Full path of the response to wait for. Setting it starts watching the response's
    // directory at once, so that the wait knows of a response that began to be written
    // before the form was shown.
    const QString& Filename() const { return filename_; }
    void setFilename(const QString& path);

    // Seconds counted since the form was shown.
    qint16 tickCounter() const { return tickCounter_; }
    bool visible() const { return visible_; }
    // Whether the seconds have run past Delay, and the status shows the overtime wording.
    bool overtime() const { return tickCounter_ > Delay; }

    // Loads the form and shows it modally through the face; returns once it is hidden.
    void Show(TransmitFace& face);
    // The event loop of a shown form: a tick each Timer1.Interval while Timer1 is enabled,
    // file events as they come. Returns once the form is hidden. Faces run it.
    void runEventLoop();

    void Form_Load();
    void Timer1_Timer();
    void cmdAbort_Click();
    // Stops watching and ticking; the form's exchange is over.
    void Unload();

private:
    void responseLanded();
    void lookOnStart();
    void lookOnTick();
    void takeResponse();
    void Hide();
    void refreshFace();

    QString filename_;
    std::unique_ptr<DirectoryWatch> watch_;
    TransmitFace* face_ = nullptr;
    QEventLoop* loop_ = nullptr;
    qint16 tickCounter_ = 0;
    bool visible_ = false;
};

// How the wait is shown. The face routes the user's abort to cmdAbort_Click and returns
// from showModal once the form is hidden.
class TransmitFace {
public:
    virtual ~TransmitFace() = default;
    // Shows the loaded form; most faces draw it and run form.runEventLoop().
    virtual void showModal(frmTransmit& form) = 0;
    // The display has changed: after loading, after each tick, and on hiding. The user may
    // press ABORT from here.
    virtual void refresh(frmTransmit& form) = 0;
};

// The face the exchange shows its wait on: the console's unless a host set another.
TransmitFace& transmitFace();
void setTransmitFace(std::shared_ptr<TransmitFace> face);

}  // namespace tvrx
