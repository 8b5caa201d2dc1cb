#include "prescription/PrescriptionFixture.h"
#include "prescription/RXImageFolder.h"
#include "session/runtime/Session.h"
#include "support/DataRows.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tvrx {
namespace {

class PrescriptionImageTest : public test::PrescriptionFixture {
protected:
    QString writeFile(const QString& name, const QByteArray& bytes) {
        const QString path = files.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    QTemporaryDir files;
};

// On a machine without the scanning component there is no image and nothing is said.
TEST_P(PrescriptionImageTest, WithoutAScannerThereIsNoImageAndNoReport) {
    clsPrescription rx;
    rx.Number = 100007;
    EXPECT_EQ(rx.RXImageFile(), QString());
    EXPECT_FALSE(rx.SetRXImageFile());
}

// Scanning keeps a copy named after the prescription number, in place of an older one;
// the component is told the number and the connection without its password.
TEST_P(PrescriptionImageTest, ScanningKeepsOneImagePerPrescriptionNumber) {
    const QString folder = files.filePath(QStringLiteral("images"));
    std::shared_ptr<RXImageFolder> made;
    mdlMain::Scanners.set([&] {
        made = std::make_shared<RXImageFolder>(folder);
        return made;
    });
    clsPrescription rx;
    rx.Number = 100007;
    EXPECT_EQ(rx.RXImageFile(), QString());
    EXPECT_EQ(made->number(), 100007);
    EXPECT_EQ(made->connection(), withoutPassword(connectionString()));

    user->answerInputBox(writeFile(QStringLiteral("scan.PNG"), "first scan"));
    EXPECT_TRUE(rx.SetRXImageFile());
    const QString first = QDir(folder).filePath(QStringLiteral("100007.png"));
    EXPECT_EQ(rx.RXImageFile(), first);

    user->answerInputBox(writeFile(QStringLiteral("rescan.jpg"), "second scan"));
    EXPECT_TRUE(rx.SetRXImageFile());
    EXPECT_FALSE(QFile::exists(first));
    const QString second = rx.RXImageFile();
    EXPECT_EQ(second, QDir(folder).filePath(QStringLiteral("100007.jpg")));
    QFile kept(second);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArray("second scan"));

    user->answerInputBox(QString());
    EXPECT_TRUE(rx.SetRXImageFile()) << "a cancelled scan changes nothing";
    EXPECT_EQ(rx.RXImageFile(), second);

    user->answerInputBox(files.filePath(QStringLiteral("missing.png")));
    EXPECT_TRUE(rx.SetRXImageFile()) << "the operation carries on after the failure";
    EXPECT_EQ(takeReports(), QStringList({"clsPrescription:RXImageFile 53"}));

    rx.Number = 100008;
    EXPECT_EQ(rx.RXImageFile(), QString()) << "another number has no image";
}

TVRX_BACKENDS(PrescriptionImageTest);

TEST(ConnectionTextTest, OutsideComponentsGetTheConnectionWithoutItsPassword) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("connection-passwords.tsv"))) {
        EXPECT_EQ(withoutPassword(row.cells[0]), row.cells[1]) << row.where;
    }
}

}  // namespace
}  // namespace tvrx
