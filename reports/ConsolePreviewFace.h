#pragma once

#include "reports/frmPrint.h"

#include <QString>
#include <QStringList>

#include <cstdio>

namespace tvrx {

// The preview on a console: a laid-out document is written to a PDF file and the face
// says where; any other document is written out as its text. The form closes at once.
// The files are numbered in the order the reports come: base-1.pdf, base-2.pdf ... (a
// base that ends in ".pdf" loses it first); with no base they go to the system's
// temporary folder as tvrx-report-1.pdf ... A form with buttons beside its document (the
// eligibility report) then offers its enabled ones as a numbered choice through the
// user-interaction service, Close last and the default, until the user closes it.
class ConsolePreviewFace : public PreviewFace {
public:
    explicit ConsolePreviewFace(QString pdfBase = {}, std::FILE* out = stdout);

    // The PDF files written so far.
    const QStringList& written() const { return written_; }

    void showModal(frmPrint& form) override;
    void refresh(frmPrint& form) override;
    void close(frmPrint& form) override;

private:
    void writeDocument(frmPrint& form);
    void offerSideButtons(frmPrint& form);
    QString nextPath() const;

    QString base_;
    std::FILE* out_;
    QStringList written_;
    int shown_ = 0;
};

}  // namespace tvrx
