#include "reports/ConsolePreviewFace.h"

#include "reports/LaidOutDocument.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"

#include <QDir>

namespace tvrx {

ConsolePreviewFace::ConsolePreviewFace(QString pdfBase, std::FILE* out)
    : base_(std::move(pdfBase)), out_(out) {
    if (base_.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) base_.chop(4);
    if (base_.isEmpty()) base_ = QDir::temp().filePath(QStringLiteral("tvrx-report"));
}

void ConsolePreviewFace::showModal(frmPrint& form) {
    ++shown_;
    writeDocument(form);
    offerSideButtons(form);
}

// The enabled buttons beside the document as a numbered choice, with Close last, until
// the user closes or no button is left to press.
void ConsolePreviewFace::offerSideButtons(frmPrint& form) {
    for (;;) {
        QStringList names;
        QStringList captions;
        for (const frmPrint::SideButton& button : form.sideButtons()) {
            if (!button.Enabled) continue;
            names.append(button.Name);
            captions.append(button.Caption);
        }
        if (names.isEmpty()) return;
        captions.append(form.cmdClose.Caption);
        const int count = static_cast<int>(captions.size());
        const int chosen =
            mdlMain::user().Choose(captions.join(u','), count, count, form.Caption,
                                   QStringLiteral("Choose a button of the report."), 0);
        if (chosen < 1 || chosen >= count) return;
        form.sideButton_Click(names.at(chosen - 1));
    }
}

void ConsolePreviewFace::writeDocument(frmPrint& form) {
    const auto* laidOut = dynamic_cast<const LaidOutDocument*>(&form.vp());
    if (!laidOut) {
        std::fprintf(out_, "%s\n\n", qPrintable(form.vp().plainText()));
        // The report is read before the questions about it, which go to the terminal
        // unbuffered; a log or a pipe would otherwise get it after them.
        std::fflush(out_);
        return;
    }
    const QString path = nextPath();
    if (!laidOut->writePdf(path)) {
        std::fprintf(out_, "Could not write the report to %s\n", qPrintable(path));
        return;
    }
    written_.append(path);
    const qint32 pages = laidOut->PageCount();
    std::fprintf(out_, "Report written to %s (%d page%s)\n", qPrintable(path), pages,
                 pages == 1 ? "" : "s");
}

void ConsolePreviewFace::refresh(frmPrint& /*form*/) {}

void ConsolePreviewFace::close(frmPrint& /*form*/) {}

QString ConsolePreviewFace::nextPath() const {
    return base_ + u'-' + QString::number(shown_) + QStringLiteral(".pdf");
}

}  // namespace tvrx
