#include "prescription/PrescriptionFixture.h"
#include "support/DataRows.h"
#include "support/ExpectedDialogs.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <thread>

namespace tvrx {
namespace {

// A scripted user that, once the last prepared answer (an input box's) is given, lets
// something happen at the counter before the fill is stored: a statement fails, another
// workstation fills.
class InterruptedUser : public ScriptedUserInteraction {
public:
    std::function<void()> meanwhile;

    QString InputBox(const QString& prompt, const QString& title,
                     const QString& defaultText) override {
        QString answer = ScriptedUserInteraction::InputBox(prompt, title, defaultText);
        if (pendingAnswers() == 0 && meanwhile) std::exchange(meanwhile, nullptr)();
        return answer;
    }
};

using RefillCase = test::KeywordCase;

// "Column=value" cells; "null" stands for a null.
QList<QPair<QString, QString>> assignments(const QStringList& cells) {
    QList<QPair<QString, QString>> pairs;
    for (const QString& cell : cells) {
        const qsizetype equals = cell.indexOf(u'=');
        pairs.append({cell.left(equals), cell.mid(equals + 1)});
    }
    return pairs;
}

QVariant valueOf(const QString& text) {
    return text == "null" ? QVariant() : QVariant(test::unescaped(text));
}

// A value as the data files write it: "null", a date-time "yyyy-MM-dd HH:mm:ss", a number
// in its shortest form, a text.
QString written(const QVariant& value) {
    if (value.typeId() == QMetaType::QString) return value.toString();
    if (value.isNull()) return QStringLiteral("null");
    if (value.typeId() == QMetaType::QDateTime) return Dialect::dateTimeText(value.toDateTime());
    return QString::number(value.toDouble());
}

class NewAndRefillTest : public test::PrescriptionFixture {
protected:
    void SetUp() override {
        PrescriptionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        mdlMain::UserService = scripted;
        scripted->setUnexpectedCallHandler(
            [](const QString& message) { ADD_FAILURE() << message.toStdString(); });
        parse();
    }

    void TearDown() override {
        EXPECT_EQ(scripted->pendingAnswers(), 0);
        PrescriptionFixture::TearDown();
    }

    // The global lines (the fills' columns, the drugs) and the cases.
    void parse() {
        for (const test::DataRow& row : test::dataRows("fills.tsv")) {
            const QString keyword = row.cells.value(0);
            if (keyword == "columns")
                columns = row.cells.mid(1).join(u'\t');
            else if (keyword == "drug")
                db->Execute("INSERT INTO DRUG (DrugID, Name, Schedule) VALUES (?, ?, ?)",
                            {row.cells[1].toInt(), row.cells[2], valueOf(row.cells.value(3))});
            else if (keyword == "case")
                cases.append({row.where, {}});
            if (!cases.isEmpty()) cases.last().lines.append(row.cells);
        }
    }

    void arrange(const RefillCase& c) {
        db->Execute("DELETE FROM RXINFO");
        db->Execute("DELETE FROM Ingredients");
        scripted->clear();
        reporter->clear();
        const QStringList at = c.first("clock");
        clock->set(at.isEmpty() ? test::at(2026, 3, 14, 9, 26, 53)
                                : Dialect::dateTimeFromText(at[0]));
        QString fills = columns + u'\n';
        for (const QStringList& fill : c.all("fill")) fills += fill.join(u'\t') + u'\n';
        loadTabSeparated(*db, "RXINFO", fills);
        // The fills carry their keys; PostgreSQL's key counter must learn where they stand.
        if (backend() == Backend::PostgreSQL)
            db->Scalar(
                "SELECT setval(pg_get_serial_sequence('rxinfo', 'rxinfoid'), "
                "(SELECT COALESCE(MAX(RXInfoID), 0) + 1 FROM RXINFO), false)");
        for (const QStringList& set : c.all("set")) {
            for (const auto& [column, value] : assignments(set.mid(1)))
                db->Execute(
                    QStringLiteral("UPDATE RXINFO SET %1 = ? WHERE RXInfoID = ?").arg(column),
                    {valueOf(value), set[0].toInt()});
        }
        QString ingredients = QStringLiteral("RxInfoID\tNAME\tNDC\tCostBasis\tQty\tCost\tHCPC\n");
        for (const QStringList& i : c.all("ingredient")) ingredients += i.join(u'\t') + u'\n';
        loadTabSeparated(*db, "Ingredients", ingredients);
        for (const QStringList& ask : c.all("ask")) {
            const QString kind = test::expectedDialog(ask[0]).section(u':', 0, 0);
            if (kind == "MsgBox") {
                for (Answer answer : {Answer::OK, Answer::Cancel, Answer::Yes, Answer::No})
                    if (answerName(answer) == ask[2]) scripted->answerMsgBox(answer);
            } else if (kind == "Choose") {
                scripted->answerChoose(ask[2].toInt());
            } else {
                scripted->answerInputBox(ask[2] == "empty" ? QString() : ask[2]);
            }
        }
        const QStringList hook = c.first("meanwhile");
        if (hook.value(0) == "fail")
            scripted->meanwhile = [this, hook] { db->failNextStatement(hook[1].toLong()); };
        if (hook.value(0) == "fill")
            scripted->meanwhile = [this, hook] {
                connect()->Execute(
                    "INSERT INTO RXINFO (Number, RefillNumber, Deleted) VALUES (?, ?, 0)",
                    {hook[1].toInt(), hook[2].toInt()});
            };
    }

    // "refill": the number, then rph, start, patient, tech, override. "new": rph, tech and
    // the pharmacist the object held before ("held"). The code of a new prescription is 1
    // when it was made, and the number the one it got.
    qint16 run(const RefillCase& c, clsPrescription& rx, qint32& number) {
        QHash<QString, qint32> option{{"rph", 3},  {"start", 0},    {"patient", 0},
                                      {"tech", 4}, {"override", 0}, {"held", 0}};
        const QStringList failing = c.first("failing");
        if (!failing.isEmpty()) db->failNextStatement(failing[0].toLong());
        const QStringList made = c.first("new");
        if (!c.all("new").isEmpty()) {
            for (const auto& [name, value] : assignments(made)) option[name] = value.toInt();
            rx.RPh = option["held"];
            const bool ok = rx.NewPrescription(option["rph"], option["start"], option["tech"]);
            number = rx.Number;
            return ok ? 1 : 0;
        }
        const QStringList call = c.first("refill");
        number = call[0].toInt();
        for (const auto& [name, value] : assignments(call.mid(1))) option[name] = value.toInt();
        return rx.RefillPrescription(option["rph"], option["start"], number, option["patient"],
                                     option["tech"], option["override"] != 0);
    }

    void check(const RefillCase& c, const clsPrescription& rx, qint16 code, qint32 number) {
        EXPECT_EQ(QStringList({QString::number(code), QString::number(number)}), c.first("expect"));
        QStringList asked;
        for (const auto& call : scripted->calls()) asked << test::asked(call);
        QStringList dialogs;
        for (const QStringList& ask : c.all("ask"))
            dialogs << test::expectedDialog(ask[0],
                                            ask[1] == "-" ? QStringList() : ask[1].split(u','));
        EXPECT_EQ(asked, dialogs);
        EXPECT_EQ(takeReports(), c.first("reports"));
        for (const QStringList& row : c.all("row")) {
            for (const auto& [column, value] : assignments(row)) {
                const QString select = QStringLiteral("SELECT %1 FROM RXINFO WHERE RXInfoID = ?");
                EXPECT_EQ(written(db->Scalar(select.arg(column), {rx.RXInfoID})), value)
                    << column.toStdString();
            }
        }
        for (const QStringList& object : c.all("object")) {
            for (const auto& [name, value] : assignments(object)) expectProperty(rx, name, value);
        }
        const bool refilled = code == -1 && c.all("new").isEmpty();
        EXPECT_EQ(ingredientsOf(refilled ? rx.RXInfoID : -1), c.first("ingredients"));
        const QStringList fills = c.first("fills");
        if (!fills.isEmpty()) {
            EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM RXINFO").toInt(), fills[0].toInt());
        }
    }

    // A property by its column's name, or the object's kind ("Type") or fill mode.
    static void expectProperty(const clsPrescription& rx, const QString& name,
                               const QString& value) {
        if (name == "Type") {
            EXPECT_EQ(QString::number(rx.PrescriptionType), value);
            return;
        }
        if (name == "FillMode") {
            EXPECT_EQ(rx.FillMode(), QString(value).remove(u'"'));
            return;
        }
        const auto& described = prescriptionColumns().columns();
        const auto found = std::find_if(described.begin(), described.end(),
                                        [&](const auto& column) { return name == column.name; });
        ASSERT_NE(found, described.end()) << name.toStdString();
        EXPECT_EQ(written(found->property.get(rx)), value) << name.toStdString();
    }

    // Every value of a fill's ingredients, one after the other.
    QStringList ingredientsOf(qint32 rxInfoId) const {
        QStringList values;
        RecordSet rs = db->OpenRecordSet(
            "SELECT NAME, NDC, CostBasis, Qty, Cost, HCPC FROM Ingredients WHERE RxInfoID = ? "
            "ORDER BY IngredientID",
            {rxInfoId});
        for (; !rs.Eof(); rs.MoveNext()) {
            for (int i = 0; i < rs.FieldCount(); ++i) values << rs.Fields(i).toString();
        }
        return values;
    }

    std::shared_ptr<InterruptedUser> scripted = std::make_shared<InterruptedUser>();
    QString columns;
    QList<RefillCase> cases;
};

TEST_P(NewAndRefillTest, EveryRuleOnBothSidesOfItsBoundaryAndEveryButton) {
    for (const RefillCase& c : cases) {
        SCOPED_TRACE(c.where);
        arrange(c);
        clsPrescription rx;
        const QStringList load = c.first("load");
        if (!load.isEmpty()) {
            rx.RXInfoID = load[0].toInt();
            rx.GetData();
            rx.PrescriptionType = EditRx;
        }
        qint32 number = 0;
        const qint16 code = run(c, rx, number);
        check(c, rx, code, number);
    }
}

// Two workstations, each with its own session and connection, starting prescriptions at
// the same time: every number is handed out once, none is skipped, nothing is reported.
TEST_P(NewAndRefillTest, TwoWorkstationsAtOnceNeverShareANumber) {
    const auto workstation = [database = connectionString()](QStringList* numbers) {
        auto recorder = std::make_shared<RecordingErrorReporter>();
        mdlMain::ErrorReporter = recorder;
        auto connection = std::make_shared<DbConnection>(database);
        connection->Open();
        clsPrescription rx;
        rx.setConnection(connection);
        for (int i = 0; i < 25; ++i)
            *numbers << (rx.NewPrescription(3, 0) ? QString::number(rx.Number) : QString());
        *numbers << recorder->locations();
        mdlMain::resetSession();
    };
    QStringList first, second;
    std::thread one(workstation, &first);
    std::thread other(workstation, &second);
    one.join();
    other.join();
    QList<int> all;
    for (const QString& number : first + second) all << number.toInt();
    std::sort(all.begin(), all.end());
    QList<int> expected(50);
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(all, expected);
}

TVRX_BACKENDS(NewAndRefillTest);

}  // namespace
}  // namespace tvrx
