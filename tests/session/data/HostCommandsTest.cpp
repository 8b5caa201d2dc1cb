#include "session/data/Catalogue.h"
#include "session/data/SamplePharmacy.h"
#include "support/DataRows.h"
#include "support/SchemaFixture.h"

namespace tvrx {
namespace {

// The catalogue over the sample pharmacy, as a host runs it.
class HostCommandsTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_TRUE(loadSamplePharmacy(*db).loaded);
        catalogue().RxDB().setConnectionString(connectionString());
        catalogue().RxDB().Open();
    }
    static Catalogue& catalogue() { return mdlMain::catalogue(); }

    // A cell as a bound value: "null", "" an empty text, a date-time, or the text.
    static QVariant value(const QString& cell) {
        const QDateTime at = QDateTime::fromString(cell, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        if (cell == "null") return {};
        if (cell == "\"\"") return QStringLiteral("");
        return at.isValid() ? QVariant(at) : QVariant(cell);
    }

    // A stored value as the data files write it.
    static QString shown(const QVariant& stored) {
        if (stored.isNull()) return QStringLiteral("null");
        if (stored.typeId() == QMetaType::QDateTime)
            return stored.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        const QString text = stored.toString();
        return text.isEmpty() ? QStringLiteral("\"\"") : text;
    }

    static QString column(RecordSet& rows, const QString& name) {
        QStringList values;
        for (; !rows.Eof(); rows.MoveNext()) values.append(rows.Fields(name).toString());
        return values.join(u',');
    }
};

TEST_P(HostCommandsTest, EachCommandOnlyAHostRunsHasABody) {
    for (const test::DataRow& row : test::dataRows("host-procedures.tsv")) {
        SCOPED_TRACE(row.where);
        const QString command = row.cells.value(0);
        QVariantList args;
        if (!row.cells.value(1).isEmpty())
            for (const QString& cell : row.cells.value(1).split(u'|')) args.append(value(cell));
        const QString check = row.cells.value(2);
        catalogue().Run(command, args);
        RecordSet& rows = catalogue().rs(command);
        if (check.startsWith("rows:")) {
            EXPECT_EQ(column(rows, check.mid(5)), row.cells.value(3));
        } else {
            const QVariantList made{catalogue().returnValue(command)};
            RecordSet after =
                db->OpenRecordSet(check.mid(4), check.contains(u'?') ? made : QVariantList());
            EXPECT_EQ(column(after, after.FieldNames().value(0)), row.cells.value(3));
        }
        if (rows.State() == 1) rows.Close();
    }
}

// The host adds rows through the list's record set; one Update stores its values and the
// defaults of what it left alone.
TEST_P(HostCommandsTest, NewAutoRefillRowsTakeTheListsDefaults) {
    const QStringList columns{"PatientName", "Description", "LastDate", "SpecificDay",
                              "IntervalDays"};
    const QString today = clock->now().date().startOfDay().toString("yyyy-MM-dd HH:mm:ss");
    for (const test::DataRow& row : test::dataRows("auto-refill-rows.tsv")) {
        SCOPED_TRACE(row.where);
        catalogue().Run("dbo_AllAutoRefill");
        RecordSet& list = catalogue().rs("dbo_AllAutoRefill");
        list.AddNew();
        list.setField("PatientID", 2);
        for (int i = 0; i < columns.size(); ++i)
            if (row.cells[i] != "-") list.setField(columns[i], value(row.cells[i]));
        list.Update();
        const QVariant key = list.Fields("AutoRefillID");
        list.Close();
        RecordSet stored = db->OpenRecordSet(
            "SELECT " + columns.join(", ") + " FROM AutoRefill WHERE AutoRefillID = ?", {key});
        ASSERT_FALSE(stored.Eof());
        for (int i = 0; i < columns.size(); ++i) {
            const QString expected = row.cells[columns.size() + i];
            EXPECT_EQ(shown(stored.Fields(i)), expected == "today" ? today : expected)
                << columns[i].toStdString();
        }
    }
    catalogue().Run("dbo_AllAutoRefill");
    EXPECT_EQ(column(catalogue().rs("dbo_AllAutoRefill"), "AutoRefillID"), "1,2,3,4,5,6");
}

// The want line is opened through the catalogue, updatable; a write-back names only the
// fields assigned, so what another workstation wrote meanwhile in the others stays.
TEST_P(HostCommandsTest, AWriteBackStoresOnlyTheFieldsAssigned) {
    catalogue().Run("WantbookAdjust", {8});
    RecordSet& line = catalogue().rs("WantbookAdjust");
    ASSERT_TRUE(line.Updatable());
    const QDateTime elsewhere(QDate(2026, 3, 13), QTime(17, 0));
    connect()->Execute("UPDATE WANTBOOK SET Date = ?, OrderQty = 2 WHERE DrugID = 8", {elsewhere});
    line.setField("OrderQty", 6);
    line.Update();
    line.AddNew();
    line.setField("DrugID", 3);
    line.Update();
    line.Close();
    EXPECT_EQ(db->Scalar("SELECT OrderQty FROM WANTBOOK WHERE DrugID = 8").toInt(), 6);
    EXPECT_EQ(db->Scalar("SELECT Date FROM WANTBOOK WHERE DrugID = 8").toDateTime(), elsewhere);
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM WANTBOOK WHERE DrugID = 3 AND Date IS NULL AND "
                         "OrderQty IS NULL")
                  .toInt(),
              1);
}

TVRX_BACKENDS(HostCommandsTest);

}  // namespace
}  // namespace tvrx
