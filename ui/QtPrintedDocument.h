#pragma once

#include "reports/LaidOutDocument.h"

#include <memory>

class QPrinter;

namespace tvrx {

// A laid-out document that reaches the desktop's printers. The device names the printer;
// empty means the default printer; a path ending in ".pdf" prints to that file. The
// printer dialog's setup mode (3) is Qt's page setup dialog, any other mode its print
// dialog. Without an installed printer, printing and the dialogs fail with
// docerr::NoPrinter.
class QtPrintedDocument : public LaidOutDocument {
public:
    QtPrintedDocument();
    ~QtPrintedDocument() override;

protected:
    int print() override;
    int printerDialog(int mode, bool& accepted) override;

private:
    // The printer the device names, set up for this document's paper; null for none.
    QPrinter* printer();

    std::unique_ptr<QPrinter> printer_;
};

}  // namespace tvrx
