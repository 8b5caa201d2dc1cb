#include "ui/ScanPicker.h"
#include "session/runtime/Session.h"

#include <QFileDialog>
#include <QPointer>

namespace tvrx {

RXImageFolder::Picker fileDialogPicker(QWidget* window) {
    return [parent = QPointer<QWidget>(window)](const QString& prompt) {
        return QFileDialog::getOpenFileName(
            parent.data(), prompt, QString(),
            QStringLiteral("Images (*.png *.jpg *.jpeg *.tif *.tiff *.bmp *.gif *.pdf);;"
                           "All files (*)"),
            nullptr, QFileDialog::DontUseNativeDialog);
    };
}

void installDesktopScanner(QWidget* window, const QString& folder) {
    mdlMain::Scanners.set([window = QPointer<QWidget>(window), folder] {
        return std::make_shared<RXImageFolder>(folder, fileDialogPicker(window.data()));
    });
}

}  // namespace tvrx
