#include "support/ModalDriver.h"
#include "ui/ScanPicker.h"

#include "session/runtime/Session.h"

#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>

namespace tvrx {
namespace {

// The image chosen in the dialog is the one the folder keeps; a cancelled dialog keeps none.
TEST(ScanPickerTest, TheFileChosenInTheDialogIsKept) {
    QTemporaryDir files;
    const QString scan = files.filePath(QStringLiteral("scan.png"));
    QFile file(scan);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("image");
    file.close();
    RXImageFolder images(files.filePath(QStringLiteral("images")), fileDialogPicker(nullptr));
    images.InitLibrary(QString(), 100007);
    test::onNextModal<QFileDialog>([&](QFileDialog* dialog) {
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Image file of prescription 100007"));
        dialog->selectFile(scan);
        static_cast<QDialog*>(dialog)->accept();
    });
    images.ShowScanForm();
    EXPECT_EQ(images.GetRXImage(QString()), files.filePath(QStringLiteral("images/100007.png")));

    images.InitLibrary(QString(), 100008);
    test::onNextModal<QFileDialog>([](QFileDialog* dialog) { dialog->reject(); });
    images.ShowScanForm();
    EXPECT_EQ(images.GetRXImage(QString()), QString());
}

}  // namespace
}  // namespace tvrx
