#include "ui/QtPrintedDocument.h"

#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace tvrx {

QtPrintedDocument::QtPrintedDocument() = default;
QtPrintedDocument::~QtPrintedDocument() = default;

int QtPrintedDocument::print() {
    if (Device().endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        return LaidOutDocument::print();
    }
    QPrinter* target = printer();
    if (!target) return docerr::NoPrinter;
    return paintPages(*target) ? docerr::None : docerr::PrintFailed;
}

int QtPrintedDocument::printerDialog(int mode, bool& accepted) {
    accepted = false;
    QPrinter* target = printer();
    if (!target) return docerr::NoPrinter;
    if (mode == kPrinterSetupDialog) {
        QPageSetupDialog dialog(target);
        accepted = dialog.exec() == QDialog::Accepted;
    } else {
        QPrintDialog dialog(target);
        accepted = dialog.exec() == QDialog::Accepted;
    }
    return docerr::None;
}

// The printer is chosen once, from the device; a printer the user picks in the print
// dialog then stays for this document.
QPrinter* QtPrintedDocument::printer() {
    if (!printer_) {
        const QPrinterInfo named = Device().isEmpty() ? QPrinterInfo::defaultPrinter()
                                                      : QPrinterInfo::printerInfo(Device());
        if (named.isNull()) return nullptr;
        printer_ = std::make_unique<QPrinter>(named, QPrinter::HighResolution);
    }
    printer_->setFullPage(true);
    const auto orientation =
        documentSettings().Orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait;
    printer_->setPageLayout(
        QPageLayout(QPageSize(QPageSize::Letter), orientation, QMarginsF(0, 0, 0, 0)));
    return printer_.get();
}

}  // namespace tvrx
