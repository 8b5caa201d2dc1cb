#include "reports/ConsolePreviewFace.h"

#include "reports/LaidOutDocument.h"

#include <QDir>

namespace tvrx {

ConsolePreviewFace::ConsolePreviewFace(QString pdfBase, std::FILE* out)
    : base_(std::move(pdfBase)), out_(out) {
    if (base_.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) base_.chop(4);
    if (base_.isEmpty()) base_ = QDir::temp().filePath(QStringLiteral("tvrx-report"));
}

void ConsolePreviewFace::showModal(frmPrint& form) {
    ++shown_;
    const auto* laidOut = dynamic_cast<const LaidOutDocument*>(&form.vp());
    if (!laidOut) {
        std::fprintf(out_, "%s\n\n", qPrintable(form.vp().plainText()));
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
