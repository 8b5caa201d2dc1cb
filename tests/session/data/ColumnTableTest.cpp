#include "session/data/ColumnTable.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"
#include "support/DatabaseFixture.h"

namespace tvrx {
namespace {

// A record with one property of every type and every read and write form.
struct Card {
    qint32 CardID = 0;
    qint16 Count = 0;
    qint32 Total = 0;
    double Weight = 0;
    Currency Fee = 0;
    QDateTime Issued;
    QString Name;
    QString Code;
    QString Note;
    bool Active = false;
    bool Flag = false;
    QDateTime Stamp;

    QString Holder() const { return holder_; }
    void setHolder(const QString& value) {
        holder_ = value.toUpper();
        ++holderSets;
    }
    int holderSets = 0;

private:
    QString holder_;
};

using R = ReadForm;
using W = WriteForm;

const ColumnTable<Card>& cardColumns() {
    static const ColumnTable<Card> table(
        "Card", "CardID",
        {
            {"Count", member(&Card::Count), R::zeroText(), W::number()},
            {"Total", member(&Card::Total), R::nullScreen(0), W::number()},
            {"Weight", member(&Card::Weight), R::converted(), W::number()},
            {"Fee", member(&Card::Fee), R::zeroText(), W::value()},
            {"Issued", member(&Card::Issued), R::ifDate(), W::date("MM/DD/YYYY")},
            {"Name", member(&Card::Name), R::trimmed(), W::quotedDoubled()},
            {"Code", member(&Card::Code), R::text(), W::doubledThenCut(6)},
            {"Note", member(&Card::Note), R::none(), W::quotedRaw().onOriginalRowOnly()},
            {"Active", member(&Card::Active), R::nullScreen(0), W::boolean()},
            {"Flag", member(&Card::Flag), R::zeroText(), W::boolean(1, 0)},
            {"Holder", accessor(&Card::Holder, &Card::setHolder), R::text(), W::quotedRaw()},
            {"Stamp", member(&Card::Stamp), R::ifDate(), W::none()},
        });
    return table;
}

class ColumnTableTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        createTable(QStringLiteral(
            "CREATE TABLE Card (CardID @KEY@, Count @INT@, Total @INT@, Weight @DOUBLE@, "
            "Fee @MONEY@, Issued @DATETIME@, Name @TEXT@, Code @TEXT@, Note @TEXT@, "
            "Active @SMALLINT@, Flag @SMALLINT@, Holder @TEXT@, Stamp @DATETIME@)"));
    }

    qint32 insertRow(const Card& card) {
        const BoundStatement insert = cardColumns().insert(card);
        db->Execute(insert.sql, insert.params);
        return db->Scalar("SELECT MAX(CardID) FROM Card").toInt();
    }

    Card readRow(qint32 id, Card card = {}) {
        RecordSet rs = db->OpenRecordSet(cardColumns().selectAll(), {id});
        Frame frame("Card:GetData");
        cardColumns().read(frame, rs, card);
        return card;
    }

    QVariant stored(const char* column, qint32 id) {
        return db->Scalar(
            QStringLiteral("SELECT %1 FROM Card WHERE CardID = ?").arg(QString::fromLatin1(column)),
            {id});
    }
};

TEST_P(ColumnTableTest, WriteThenReadGivesWhatTheFormsPredict) {
    Card card;
    card.Count = 12;
    card.Total = 70000;
    card.Weight = 0.1 + 0.2;
    card.Fee = 12.34567;
    card.Issued = QDateTime(QDate(2025, 7, 4), QTime(14, 35, 9));
    card.Name = "  Ann O'Hara  ";
    card.Code = "O'Brien's";
    card.Note = QString::fromLatin1("kept\0here", 9);
    card.Active = true;
    card.Flag = true;
    card.setHolder("ann");
    card.Stamp = QDateTime(QDate(2020, 1, 1), QTime(1, 2, 3));
    const qint32 id = insertRow(card);

    EXPECT_EQ(stored("Active", id).toInt(), -1);
    EXPECT_EQ(stored("Flag", id).toInt(), 1);
    EXPECT_EQ(stored("Note", id).toString(), "kepthere") << "character 0 is not stored";
    EXPECT_FALSE(stored("Stamp", id).isValid()) << "a column that is not written";

    Card before;
    before.Note = "unread";
    const Card read = readRow(id, before);
    EXPECT_TRUE(reporter->reports().isEmpty());
    EXPECT_EQ(read.Count, 12);
    EXPECT_EQ(read.Total, 70000);
    EXPECT_EQ(read.Weight, 0.3) << "the decimal text the statement held";
    EXPECT_EQ(read.Fee, 12.3457) << "currency keeps four places";
    EXPECT_EQ(read.Issued, QDateTime(QDate(2025, 7, 4), QTime(0, 0)))
        << "the picture drops the time";
    EXPECT_EQ(read.Name, "Ann O'Hara");
    EXPECT_EQ(read.Code, "O'Bri") << "doubled, cut to 6, undoubled";
    EXPECT_EQ(read.Note, "unread") << "a column that is not read";
    EXPECT_TRUE(read.Active);
    EXPECT_TRUE(read.Flag);
    EXPECT_EQ(read.Holder(), "ANN") << "read through the setter";
    EXPECT_FALSE(read.Stamp.isValid());

    Card changed = read;
    changed.Issued = QDateTime();
    changed.Active = false;
    changed.Flag = false;
    const BoundStatement update = cardColumns().update(changed, id);
    db->Execute(update.sql, update.params);
    EXPECT_EQ(stored("Active", id).toInt(), 0);
    EXPECT_EQ(readRow(id).Issued, conv::ZeroDate()) << "an unset date writes the zero date";
}

TEST_P(ColumnTableTest, EachBadColumnCostsOneReportAndTheRestStillReads) {
    const struct {
        const char* what;
        QString assignments;
        std::vector<long> failures;
    } cases[] = {
        {"nulls read as the forms' defaults",
         "Count = NULL, Total = NULL, Fee = NULL, Flag = NULL",
         {}},
        {"negative zero-text", "Count = -5, Fee = -1.5", {err::TypeMismatch, err::TypeMismatch}},
        {"16-bit overflow", "Count = 32767 + 1", {err::Overflow}},
        {"null converted", "Weight = NULL", {err::InvalidUseOfNull}},
    };
    for (const auto& c : cases) {
        reporter->clear();
        Card card;
        card.Weight = 2.5;
        card.setHolder("bo");
        const qint32 id = insertRow(card);
        db->Execute(
            QStringLiteral("UPDATE Card SET %1, Name = NULL WHERE CardID = ?").arg(c.assignments),
            {id});
        Card former;
        former.Count = 7;
        former.Fee = 9;
        former.Weight = 1;
        former.Name = "old";
        const Card read = readRow(id, former);
        std::vector<long> numbers;
        for (const ErrorReport& report : reporter->reports()) {
            numbers.push_back(report.number.toLong());
            EXPECT_EQ(report.location, "Card:GetData");
        }
        EXPECT_EQ(numbers, c.failures) << c.what;
        EXPECT_EQ(read.Name, "") << c.what;
        EXPECT_EQ(read.Holder(), "BO") << c.what << ": later columns still read";
        if (c.failures.empty()) {
            EXPECT_EQ(read.Count, 0) << c.what;
            EXPECT_EQ(read.Fee, 0) << c.what;
        } else if (c.failures.front() != err::InvalidUseOfNull) {
            EXPECT_EQ(read.Count, 7) << c.what << ": a failed column keeps its value";
        } else {
            EXPECT_EQ(read.Weight, 1) << c.what;
        }
    }
}

// The UPDATE names the written columns in the description's order, a refill's without
// those kept on the original's row; a read takes its own order.
TEST_P(ColumnTableTest, StatementsFollowTheDescriptionAndReadsTheirOwnOrders) {
    const ColumnTable<Card>& table = cardColumns();
    Card card;
    card.Count = 3;
    card.Name = "Cy";
    card.setHolder("x");
    const qint32 id = insertRow(card);
    card.Count = 4;
    card.Name = "Di";
    card.Note = "original only";
    const BoundStatement refill = table.update(card, id, RowWritten::Refill);
    EXPECT_EQ(refill.sql,
              "UPDATE Card SET Count = ?, Total = ?, Weight = ?, Fee = ?, Issued = ?, Name = ?, "
              "Code = ?, Active = ?, Flag = ?, Holder = ? WHERE CardID = ?");
    EXPECT_EQ(table.update(card, id).params.size(), refill.params.size() + 1);
    db->Execute(refill.sql, refill.params);
    EXPECT_EQ(stored("Note", id).toString(), "") << "as the insert left it";

    const ColumnOrder selectOrder = table.order({"Holder", "Count", "Name"});
    RecordSet rs = db->OpenRecordSet(table.selectList(selectOrder), {id});
    Card read;
    Frame frame("Card:GetData");
    table.read(frame, rs, read, table.order({"count", "NAME"}));
    EXPECT_EQ(read.Count, 4);
    EXPECT_EQ(read.Name, "Di");
    EXPECT_EQ(read.holderSets, 0) << "a column the read order leaves out";

    static const ColumnTable<Card> byPosition(
        "Card", "CardID", {{"Other", member(&Card::Code), R::text().at(0), W::none()}});
    byPosition.read(frame, rs, read);
    EXPECT_EQ(read.Code, "X") << "the first field of the result, whatever its name";
    EXPECT_EQ(frame.failures(), 0);
}

// GetData's read on the main connection: a row is read, a missing one is left to the
// caller, and a query that fails goes on as the record's test for a row says: into the
// read, whose eleven read columns then fail one by one, or to the missing row.
TEST_P(ColumnTableTest, LoadReadsTheRowOrLeavesAMissingOneToTheCaller) {
    mdlMain::MainConnection = db;
    Card kept;
    kept.Count = 5;
    const qint32 id = insertRow(kept);
    const struct {
        const char* what;
        qint32 key;
        bool queryFails;
        FailedRowTest failedTest;
        bool found;
        int reports;
    } cases[] = {
        {"a row", id, false, FailedRowTest::MissesTheRow, true, 0},
        {"no row", id + 1, false, FailedRowTest::ReadsOn, false, 0},
        {"a failed query, reading on", id, true, FailedRowTest::ReadsOn, true, 13},
        {"a failed query, no row", id, true, FailedRowTest::MissesTheRow, false, 2},
    };
    for (const auto& c : cases) {
        reporter->clear();
        if (c.queryFails) db->failNextStatement(err::StatementError);
        Card card;
        card.Count = 9;
        Frame frame("Card:GetData");
        EXPECT_EQ(cardColumns().load(frame, cardColumns().selectAll(), c.key, card,
                                     cardColumns().all(), c.failedTest),
                  c.found)
            << c.what;
        EXPECT_EQ(reporter->reports().size(), c.reports) << c.what;
        EXPECT_EQ(card.Count, c.found && !c.queryFails ? 5 : 9) << c.what;
    }
}

TVRX_BACKENDS(ColumnTableTest);

}  // namespace
}  // namespace tvrx
