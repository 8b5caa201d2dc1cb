#include "support/ModalDriver.h"
#include "ui/TransmitDialog.h"

#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace tvrx {
namespace {

using test::onNextModal;

struct Seen {
    QString title;
    QString abortCaption;
    QString status;
    QColor statusColour;
    int maximum = 0;
    int value = 0;
};

Seen seenOn(const TransmitDialog* dialog) {
    return {dialog->titleLabel()->text(),
            dialog->abortButton()->text(),
            dialog->statusLabel()->text(),
            dialog->statusLabel()->palette().color(QPalette::WindowText),
            dialog->progressBar()->maximum(),
            dialog->progressBar()->value()};
}

TEST(TransmitDialogTest, CountsTurnsRedAndAbortsWhenAbortIsPressed) {
    QTemporaryDir folder;
    frmTransmit form;
    form.Delay = 2;
    form.Timer1.Interval = 20;
    form.setFilename(folder.filePath(QStringLiteral("03140926.RSP")));
    Seen first;
    Seen overtime;
    onNextModal<TransmitDialog>([&](TransmitDialog* dialog) {
        first = seenOn(dialog);
        auto* user = new QTimer(dialog);
        QObject::connect(user, &QTimer::timeout, dialog, [&form, &overtime, dialog] {
            if (!form.overtime() || !form.visible()) return;
            overtime = seenOn(dialog);
            QTest::mouseClick(dialog->abortButton(), Qt::LeftButton);
        });
        user->start(5);
    });

    QtTransmitFace face;
    form.Show(face);

    EXPECT_FALSE(form.Success);
    EXPECT_EQ(first.title, QStringLiteral("Transmitting Claim"));
    EXPECT_EQ(first.abortCaption, QStringLiteral("ABORT"));
    EXPECT_EQ(first.status, QStringLiteral("Looking for response ..."));
    EXPECT_NE(first.statusColour, QColor(255, 0, 0));
    EXPECT_EQ(first.maximum, 2);
    EXPECT_EQ(first.value, 0);
    EXPECT_EQ(overtime.status, QStringLiteral("Exceeded time. Still looking for response ..."));
    EXPECT_EQ(overtime.statusColour, QColor(255, 0, 0));
    EXPECT_EQ(overtime.value, 2);
}

TEST(TransmitDialogTest, ClosesByItselfWhenTheResponseLands) {
    QTemporaryDir folder;
    frmTransmit form;
    form.Delay = 60;
    form.setFilename(folder.filePath(QStringLiteral("03140926.RSP")));
    onNextModal<TransmitDialog>([&](TransmitDialog*) {
        QFile response(folder.filePath(QStringLiteral("incoming")));
        ASSERT_TRUE(response.open(QIODevice::WriteOnly));
        response.write("PAID");
        response.close();
        ASSERT_TRUE(response.rename(form.Filename()));
    });

    QtTransmitFace face;
    form.Show(face);

    EXPECT_TRUE(form.Success);
    EXPECT_EQ(form.tickCounter(), 0) << "taken at once, not on a tick";
}

}  // namespace
}  // namespace tvrx
