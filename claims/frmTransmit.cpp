#include "claims/frmTransmit.h"

#include "claims/ConsoleTransmitFace.h"
#include "claims/DirectoryWatch.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"

#include <QEventLoop>
#include <QTimer>

#include <limits>

namespace tvrx {

namespace {

const QString kTitle = QStringLiteral("Transmitting Claim");
const QString kAbortCaption = QStringLiteral("ABORT");
const QString kLooking = QStringLiteral("Looking for response ...");
const QString kExceeded = QStringLiteral("Exceeded time. Still looking for response ...");
// The colour value 255: pure red.
const QColor kOvertimeColour(255, 0, 0);
constexpr int kTickMilliseconds = 1000;

}  // namespace

frmTransmit::frmTransmit() {
    cmdAbort.Caption = kAbortCaption;
    Label1.Caption = kTitle;
    Timer1.Interval = kTickMilliseconds;
}

frmTransmit::~frmTransmit() = default;

void frmTransmit::setFilename(const QString& path) {
    filename_ = path;
    watch_ = std::make_unique<DirectoryWatch>(path);
    watch_->start([this](const QString&) { responseLanded(); });
}

void frmTransmit::Show(TransmitFace& face) {
    face_ = &face;
    Form_Load();
    if (visible_) face.showModal(*this);
    face_ = nullptr;
}

void frmTransmit::runEventLoop() {
    if (!visible_) return;
    QEventLoop loop;
    QTimer timer;
    timer.setInterval(Timer1.Interval);
    QObject::connect(&timer, &QTimer::timeout, &loop, [this] {
        if (Timer1.Enabled && visible_) Timer1_Timer();
    });
    loop_ = &loop;
    timer.start();
    loop.exec();
    loop_ = nullptr;
}

void frmTransmit::Form_Load() {
    Frame frame("frmTransmit:Form_Load");
    frame([&] { tickCounter_ = 0; });
    frame([&] { ProgressBar1.Min = 0; });
    frame([&] { ProgressBar1.Max = Delay; });
    frame([&] { Timer1.Enabled = true; });
    frame([&] { lblStatus.Caption = kLooking; });
    visible_ = true;
    frame([&] { lookOnStart(); });
    frame([&] {
        if (visible_) refreshFace();
    });
}

void frmTransmit::Timer1_Timer() {
    Frame frame("frmTransmit:Timer1_Timer");
    frame([&] {
        if (tickCounter_ == std::numeric_limits<qint16>::max()) fail(err::Overflow);
        ++tickCounter_;
    });
    frame([&] {
        if (tickCounter_ > Delay) {
            lblStatus.Caption = kExceeded;
            lblStatus.ForeColor = kOvertimeColour;
        } else {
            ProgressBar1.Value = tickCounter_;
        }
    });
    frame([&] { lookOnTick(); });
    frame([&] {
        if (visible_) refreshFace();
    });
}

void frmTransmit::cmdAbort_Click() {
    Frame frame("frmTransmit:cmdAbort_Click");
    frame([&] { Success = false; });
    frame([&] { Hide(); });
}

void frmTransmit::Unload() {
    Timer1.Enabled = false;
    visible_ = false;
    watch_.reset();
}

// A file event said the response is complete; it is taken at once, between ticks.
void frmTransmit::responseLanded() {
    Frame frame("frmTransmit:Timer1_Timer");
    frame([&] {
        if (visible_) takeResponse();
    });
}

// A response already there when the wait starts: an answer left by an earlier exchange
// of the same minute, or one that came while the request was being written.
void frmTransmit::lookOnStart() {
    if (!watch_) return;
    watch_->readEvents();
    if (visible_ && !watch_->present().isEmpty()) takeResponse();
}

// Events not yet delivered are read first; the poll finds a response no event announced.
void frmTransmit::lookOnTick() {
    if (!watch_) return;
    watch_->readEvents();
    if (visible_ && !watch_->poll().isEmpty()) takeResponse();
}

void frmTransmit::takeResponse() {
    Timer1.Enabled = false;
    Success = true;
    Hide();
}

void frmTransmit::Hide() {
    visible_ = false;
    if (loop_) loop_->quit();
    refreshFace();
}

void frmTransmit::refreshFace() {
    if (face_) face_->refresh(*this);
}

TransmitFace& transmitFace() {
    if (!mdlMain::TransmitService)
        mdlMain::TransmitService = std::make_shared<ConsoleTransmitFace>();
    return *mdlMain::TransmitService;
}

void setTransmitFace(std::shared_ptr<TransmitFace> face) {
    mdlMain::TransmitService = std::move(face);
}

}  // namespace tvrx
