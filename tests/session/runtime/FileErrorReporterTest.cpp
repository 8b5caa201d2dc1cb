#include "records/clsDoc.h"
#include "session/runtime/FileErrorReporter.h"
#include "session/runtime/Session.h"
#include "session/text/Encodings.h"
#include "support/DataRows.h"
#include "support/SchemaFixture.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <map>

namespace tvrx {
namespace {

class FileErrorReporterTest : public test::SchemaFixture {};

QJsonObject lastLine(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    return QJsonDocument::fromJson(lines.last()).object();
}

// The statement a database failure came from is in the log's line, and never in what the
// host's reporter interface carries (description, number, source).
TEST_P(FileErrorReporterTest, OnlyTheLogLineCarriesTheFailedStatement) {
    db->Execute("DROP TABLE PHYSIC");
    clsDoc doc;
    doc.setConnection(db);
    const std::map<QString, std::function<void()>> calls{
        {"clsDoc.Delete", [&] { doc.Delete(); }},
        {"clsDoc.Insert", [&] { doc.Insert(); }},
        {"FixedLength",
         [] {
             QString text = QStringLiteral("AB");
             mdlMain::FixedLength(text, -1, QStringLiteral(" "));
         }},
    };
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("errors.log"));
    auto log = std::make_shared<FileErrorReporter>(path);
    log->setEchoToStderr(false);
    mdlMain::ErrorReporter = log;

    for (const test::DataRow& row : test::dataRows(QStringLiteral("error-log.tsv"))) {
        ASSERT_EQ(row.cells.size(), 4) << row.where;
        calls.at(row.cells[0])();
        const QJsonObject line = lastLine(path);
        const QString statement = row.cells[3];
        EXPECT_EQ(line[QStringLiteral("location")].toString(), row.cells[1]) << row.where;
        EXPECT_EQ(line[QStringLiteral("number")].toString(), row.cells[2]) << row.where;
        EXPECT_EQ(line.contains(QStringLiteral("statement")), !statement.isEmpty()) << row.where;
        EXPECT_EQ(line[QStringLiteral("statement")].toString(), statement) << row.where;
        for (const char* field : {"description", "number", "source"}) {
            const QString value = line[QString::fromLatin1(field)].toString();
            EXPECT_FALSE(!statement.isEmpty() && value.contains(statement))
                << row.where << ": " << field << " " << value.toStdString();
        }
    }
}

TVRX_BACKENDS(FileErrorReporterTest);

}  // namespace
}  // namespace tvrx
