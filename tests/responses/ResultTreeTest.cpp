#include "claims/Wrapper.h"
#include "responses/PlainTree.h"
#include "responses/ResponseFixture.h"
#include "responses/ResponseJson.h"
#include "session/data/Connections.h"
#include "session/data/SamplePharmacy.h"
#include "session/runtime/BusyPointer.h"
#include "support/DataRows.h"
#include "support/SchemaFixture.h"
#include "tvrx/TreePrinter.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>

namespace tvrx {
namespace {

const QString kTreeData = QStringLiteral(TVRX_SOURCE_DIR "/tests/responses/tree/");

QString fileText(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

// The host's tree: the plain model, telling when drawing is switched, and refusing one key
// as a tree that already holds it would.
class HostTree : public PlainTree {
public:
    QString refusedKey;
    QStringList redraws;

    void setRedraw(bool on) override {
        redraws.append(on ? QStringLiteral("on") : QStringLiteral("off"));
        PlainTree::setRedraw(on);
    }
    Node Add(const QString& parentKey, const QString& key, const QString& text,
             const QString& image) override {
        if (!refusedKey.isEmpty() && key == refusedKey) {
            fail(KeyInUse, QStringLiteral("Key is not unique in collection"));
        }
        return PlainTree::Add(parentKey, key, text, image);
    }
};

class ResultTreeTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_TRUE(folder_.isValid());
        saved_ = appConfig();
        AppConfig config = saved_;
        config.LibraryFolder = folder_.path();
        setAppConfig(config);
        for (const char* table : {"INSURANCE", "PATINS"}) {
            loadTabSeparated(*db, QString::fromLatin1(table),
                             fileText(kTreeData + QString::fromLatin1(table) + ".tsv"));
        }
        mdlMain::PointerService = pointer;
    }
    void TearDown() override {
        setAppConfig(saved_);
        SchemaFixture::TearDown();
    }

    void writeLookup(bool withConflictTable) {
        const QString path = folder_.filePath(mdlMain::lookupFileName());
        test::writeLookupFile(path, test::testRejectRows());
        DbConnection lookup(path);
        lookup.Open();
        if (withConflictTable) {
            loadTabSeparated(lookup, QStringLiteral("Conflict"),
                             fileText(kTreeData + "Conflict.tsv"));
        } else {
            lookup.Execute(QStringLiteral("DROP TABLE Conflict"));
        }
    }

    static void decode(clsClaimResponse& response, const QString& sample) {
        const NotationResult read = readResponseFile(
            QStringLiteral(TVRX_SOURCE_DIR "/samples/responses/") + sample + ".txt");
        ASSERT_TRUE(read) << read.error.toStdString();
        response.Claim = *read.text;
        ASSERT_TRUE(response.BuildResponse()) << sample.toStdString();
    }

    // Fills the claim's prescriptions as the response reader leaves them.
    static void fill(Wrapper& wrapper, const QList<test::DataRow>& rows) {
        for (qsizetype n = 0; n < rows.size(); ++n) {
            const QStringList& cells = rows[n].cells;
            auto rx = n == 0 ? wrapper.colRX()->Item(1) : wrapper.colRX()->Add();
            rx->Number = cells[1].toInt();
            rx->PatInsID = cells[2].toInt();
            decode(*rx->Response(), cells[3]);
            if (cells[5].isEmpty()) continue;
            rx->OPatInsID = cells[4].toInt();
            rx->OOnlineResult = QStringLiteral("Y");
            decode(*rx->OtherResponse(), cells[5]);
        }
    }

    // What the user saw happen, then the tree.
    QString outcome(Wrapper& wrapper, const HostTree& tree) const {
        QString pointers = QStringLiteral("pointer:");
        for (const int value : pointer->values()) pointers += u' ' + QString::number(value);
        QStringList lines{pointers, QStringLiteral("redraw:")};
        for (const QString& redraw : tree.redraws) lines.last() += u' ' + redraw;
        for (const auto& rx : *wrapper.colRX()) {
            lines.append(QStringLiteral("DURConflict of RX %1: \"%2\"")
                             .arg(rx->Number)
                             .arg(rx->DURConflict));
        }
        for (const ErrorReport& report : reporter->reports()) {
            lines.append(QStringLiteral("report: %1 %2 %3")
                             .arg(report.location, report.number, report.description));
        }
        return (lines + tree.outline()).join(u'\n') + u'\n';
    }

    // The command-line host's print of the tree, for the cases that have one in console/:
    // plain in <case>.txt, for a terminal in <case>-colour.txt with <ESC> for byte 27.
    static void expectConsoleLines(const QString& name, const PlainTree& tree) {
        for (const bool colour : {false, true}) {
            const QString path = kTreeData + "console/" + name + (colour ? "-colour" : "") + ".txt";
            if (!QFile::exists(path)) continue;
            const QString lines = cli::treeLines(tree, colour).join(u'\n') + u'\n';
            EXPECT_EQ(QString(lines).replace(QChar(27), QStringLiteral("<ESC>")), fileText(path));
        }
    }

    std::shared_ptr<RecordingBusyPointer> pointer = std::make_shared<RecordingBusyPointer>();

private:
    QTemporaryDir folder_;
    AppConfig saved_;
};

// Every case of tests/responses/tree/cases.tsv: the claim's responses decoded from the
// shipped samples, the tree built, and the pointer, drawing, DUR conflict codes, reports
// and every node's text, key, image and style compared with <case>.txt.
TEST_P(ResultTreeTest, ShowsEachPayersAnswer) {
    QMap<QString, QList<test::DataRow>> cases;
    QStringList order;
    for (const test::DataRow& row : test::dataRows(QStringLiteral("../responses/tree/cases.tsv"))) {
        ASSERT_EQ(row.cells.size(), 7) << row.where;
        if (!cases.contains(row.cells[0])) order.append(row.cells[0]);
        cases[row.cells[0]].append(row);
    }
    for (const QString& name : order) {
        SCOPED_TRACE(cases[name].first().where);
        const QString setting = cases[name].first().cells[6];
        reporter->clear();
        *pointer = RecordingBusyPointer();
        mdlMain::LookupConnection.reset();
        writeLookup(setting != u"no Conflict table");
        Wrapper wrapper;
        wrapper.setConnection(db);
        fill(wrapper, cases[name]);
        if (HasFatalFailure()) return;
        reporter->clear();
        HostTree tree;
        if (setting.startsWith(u"refuse ")) tree.refusedKey = setting.mid(7);
        if (setting == u"ParseDUR") {
            qint16 first = 1;
            wrapper.ParseDUR(tree, first, QStringLiteral("11"),
                             *wrapper.colRX()->Item(1)->Response(), true);
        } else {
            wrapper.BuildTree(tree);
        }
        EXPECT_EQ(outcome(wrapper, tree), fileText(kTreeData + name + ".txt"));
        expectConsoleLines(name, tree);
    }
}

TVRX_BACKENDS(ResultTreeTest);

}  // namespace
}  // namespace tvrx
