#include "prescription/PrescriptionFixture.h"
#include "support/DataRows.h"
#include "support/ExpectedDialogs.h"

namespace tvrx {
namespace {

using VoidCase = test::KeywordCase;

class VoidTest : public test::PrescriptionFixture {
protected:
    void SetUp() override {
        PrescriptionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        for (const test::DataRow& row : test::dataRows("void-effects.tsv")) {
            const QString keyword = row.cells.value(0);
            if (keyword == "columns") columns = row.cells.mid(1).join(u'\t');
            if (keyword == "fill") fills += row.cells.mid(1).join(u'\t') + u'\n';
            if (keyword == "case") cases.append({row.where, {}});
            if (!cases.isEmpty()) cases.last().lines.append(row.cells);
        }
    }

    void arrange(const VoidCase& c) {
        for (const char* table : {"RXINFO", "INGREDIENTS", "WANTBOOK", "LOG_RX", "DRUG"})
            db->Execute(QStringLiteral("DELETE FROM %1").arg(QLatin1String(table)));
        user->clear();
        const QString stock = c.first("stock").value(0, QStringLiteral("100"));
        rows("DRUG", qPrintable("DrugID\tStock\tMinReorderQty\tParQty\tPackageSize\n8\t" + stock +
                                "\t50\t200\t10\n"));
        loadTabSeparated(*db, "RXINFO", columns + u'\n' + fills);
        db->Execute("INSERT INTO INGREDIENTS (RxInfoID, NAME) SELECT RXInfoID, 'BASE' FROM RXINFO");
        for (const QStringList& set : c.all("set")) {
            for (const QString& cell : set.mid(1))
                db->Execute(QStringLiteral("UPDATE RXINFO SET %1 = ? WHERE RXInfoID = ?")
                                .arg(cell.section(u'=', 0, 0)),
                            {cell.section(u'=', 1).toInt(), set[0].toInt()});
        }
        for (const QStringList& ask : c.all("ask")) {
            if (test::expectedDialog(ask[0]).startsWith("Choose"))
                user->answerChoose(ask[2].toInt());
            else
                user->answerMsgBox(ask[2] == "Yes" ? Answer::Yes : Answer::No);
        }
    }

    void check(const VoidCase& c, const clsPrescription& rx) {
        QStringList asked;
        QStringList dialogs;
        for (const auto& call : user->calls()) asked << test::asked(call);
        for (const QStringList& ask : c.all("ask")) dialogs << test::expectedDialog(ask[0]);
        EXPECT_EQ(asked, dialogs);
        for (const QStringList& row : c.all("row")) {
            const QVariant id = row[0].toInt();
            if (row[1] == "gone") {
                EXPECT_EQ(
                    db->Scalar("SELECT COUNT(*) FROM RXINFO WHERE RXInfoID = ?", {id}).toInt(), 0);
                continue;
            }
            for (const QString& cell : row.mid(1)) {
                const QString select = QStringLiteral("SELECT %1 FROM RXINFO WHERE RXInfoID = ?");
                EXPECT_EQ(db->Scalar(select.arg(cell.section(u'=', 0, 0)), {id}).toDouble(),
                          cell.section(u'=', 1).toDouble())
                    << "fill " << row[0].toStdString() << " " << cell.toStdString();
            }
        }
        const QStringList after = c.first("after");
        EXPECT_EQ(db->Scalar("SELECT Stock FROM DRUG WHERE DrugID = 8").toDouble(),
                  after[0].toDouble());
        const QVariant line = db->Scalar("SELECT OrderQty FROM WANTBOOK WHERE DrugID = 8");
        EXPECT_EQ(line.isNull() ? QStringLiteral("-") : line.toString(), after[1]);
        EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM INGREDIENTS").toInt(), after[2].toInt());
        EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM LOG_RX").toInt(), after[3].toInt());
        const QStringList expect = c.first("expect");
        if (!expect.isEmpty()) {
            EXPECT_EQ(QString::number(rx.RXInfoID), expect[1]);
        }
    }

    QString columns;
    QString fills;
    QList<VoidCase> cases;
};

TEST_P(VoidTest, EachActionChangesTheFillsTheStockTheWantListAndTheLog) {
    for (const VoidCase& c : cases) {
        SCOPED_TRACE(c.where);
        arrange(c);
        auto rx = loaded(c.first("load")[0].toInt());
        const QStringList qty = c.first("qty");
        if (!qty.isEmpty()) rx->Qty = qty[0].toDouble();
        const QStringList action = c.first("do");
        if (action[0] == "void")
            EXPECT_EQ(QString(rx->VoidPrescription() ? "1" : "0"), c.first("expect").value(0));
        else
            rx->Delete(action[1] == "1");
        check(c, *rx);
        EXPECT_EQ(takeReports(), QStringList());
    }
}

TVRX_BACKENDS(VoidTest);

}  // namespace
}  // namespace tvrx
