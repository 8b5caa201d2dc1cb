#include "claims/ConsoleTransmitFace.h"

#include "claims/SignalBridge.h"

#include <QString>

#include <csignal>

#include <unistd.h>

namespace tvrx {

namespace {

const QString kReceived = QStringLiteral("response received after %1 s");
const QString kAborted = QStringLiteral("aborted after %1 s");
const char* const kRed = "\x1b[31m";
const char* const kPlainColour = "\x1b[0m";
const char* const kClearLine = "\r\x1b[K";
constexpr int kBarWidth = 20;
constexpr int kPlainEverySeconds = 10;

QByteArray bar(const frmTransmit::ProgressBar& progress) {
    const int span = progress.Max - progress.Min;
    const int filled = span > 0 ? (progress.Value - progress.Min) * kBarWidth / span : 0;
    return QByteArray(filled, '#') + QByteArray(kBarWidth - filled, '-');
}

}  // namespace

ConsoleTransmitFace::ConsoleTransmitFace(std::FILE* out)
    : out_(out), live_(out != nullptr && isatty(fileno(out)) != 0) {}

void ConsoleTransmitFace::showModal(frmTransmit& form) {
    const SignalBridge interrupt({SIGINT, SIGTERM}, [&form](int) {
        if (form.visible()) form.cmdAbort_Click();
    });
    form.runEventLoop();
}

void ConsoleTransmitFace::refresh(frmTransmit& form) {
    if (!form.visible()) {
        writeEnd(form);
    } else if (live_) {
        drawLive(form);
    } else if (form.tickCounter() % kPlainEverySeconds == 0) {
        writePlain(form);
    }
    std::fflush(out_);
}

void ConsoleTransmitFace::drawLive(const frmTransmit& form) {
    std::fprintf(out_, "%s%s [%s] ", kClearLine, qPrintable(form.Label1.Caption),
                 bar(form.ProgressBar1).constData());
    if (form.overtime()) {
        std::fprintf(out_, "%d s %s%s%s", form.tickCounter(), kRed,
                     qPrintable(form.lblStatus.Caption), kPlainColour);
    } else {
        std::fprintf(out_, "%d/%d s %s", form.tickCounter(), form.Delay,
                     qPrintable(form.lblStatus.Caption));
    }
}

void ConsoleTransmitFace::writePlain(const frmTransmit& form) {
    std::fprintf(out_, "%s: %d s, %s\n", qPrintable(form.Label1.Caption), form.tickCounter(),
                 qPrintable(form.lblStatus.Caption));
}

void ConsoleTransmitFace::writeEnd(const frmTransmit& form) {
    if (live_) std::fputs(kClearLine, out_);
    const QString end = (form.Success ? kReceived : kAborted).arg(form.tickCounter());
    std::fprintf(out_, "%s: %s\n", qPrintable(form.Label1.Caption), qPrintable(end));
}

}  // namespace tvrx
