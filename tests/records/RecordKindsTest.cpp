#include "prescription/clsPrescription.h"
#include "records/Facility.h"
#include "records/PATINS.h"
#include "records/PropertyCases.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsINSURANCE.h"
#include "records/clsPatient.h"
#include "session/runtime/ErrorNumbers.h"

#include <functional>

namespace tvrx {
namespace {

// A record kind as these tests drive it through its public members: its table, the text
// columns its Update writes (from its description), how a fresh object makes and saves its
// row, how an object reads a row and saves it again, and the key GetData leaves.
struct RecordKind {
    const char* name;
    QString table, key;
    QStringList texts;
    std::function<QVariant()> saveFresh;
    std::function<void(const QVariant&)> readAndSave;
    std::function<QVariant(const QVariant&)> keyAfterGetData;
};

template <class Record, class Key>
RecordKind kind(const char* name, const ColumnTable<Record>& table, Key Record::*keyMember,
                std::function<void(Record&)> makeRow) {
    RecordKind kind{name, table.table(), table.key(), {}, {}, {}, {}};
    for (const auto& column : table.columns()) {
        if (column.property.type == ValueType::Text &&
            column.write.kind != WriteForm::Kind::NotWritten)
            kind.texts.append(column.name);
    }
    kind.saveFresh = [=] {
        Record fresh;
        makeRow(fresh);
        fresh.Update();
        return QVariant(fresh.*keyMember);
    };
    const auto read = [keyMember](Record& record, const QVariant& key) {
        record.*keyMember = key.value<Key>();
        record.GetData();
    };
    kind.readAndSave = [=](const QVariant& key) {
        Record record;
        read(record, key);
        record.Update();
    };
    kind.keyAfterGetData = [=](const QVariant& key) {
        Record record;
        read(record, key);
        return QVariant(record.*keyMember);
    };
    return kind;
}

class RecordKindsTest : public test::NoStrayReports<test::SchemaFixture> {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        Facility().setConnection(db);
        using Doc = clsDoc;
        kinds = {
            kind<PATINS>("PATINS", patinsColumns(), &PATINS::PatInsID,
                         [](PATINS& r) { r.Insert(); }),
            kind<clsINSURANCE>("clsINSURANCE", insuranceColumns(), &clsINSURANCE::InsID,
                               [this](clsINSURANCE& r) {
                                   user->answerMsgBox(Answer::No);
                                   bool found = false;
                                   r.Insert(QStringLiteral("4512345"), found);
                               }),
            kind<clsPatient>("clsPatient", patientColumns(), &clsPatient::PatientID,
                             [](clsPatient& r) { r.Insert(); }),
            kind<Doc>("clsDoc", docColumns(), &Doc::MDID, [](Doc& r) { r.Insert(); }),
            kind<clsDrug>("clsDrug", drugColumns(), &clsDrug::DrugID,
                          [](clsDrug& r) { r.Insert(); }),
            kind<Facility>("Facility", facilityColumns(), &Facility::FacilityID,
                           [](Facility& r) { r.Insert(); }),
            kind<clsPrescription>(
                "clsPrescription", prescriptionColumns(), &clsPrescription::RXInfoID,
                [this](clsPrescription& r) {
                    r.RXInfoID =
                        db->Scalar(db->dialect().insertEmptyRow(QStringLiteral("RXINFO"),
                                                                QStringLiteral("RXInfoID")))
                            .toInt();
                }),
        };
    }

    // The written text columns of the row that hold NULL.
    QStringList nullTexts(const RecordKind& kind, const QVariant& key) {
        const RecordSet row =
            db->OpenRecordSet(QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?")
                                  .arg(kind.texts.join(QStringLiteral(", ")), kind.table, kind.key),
                              {key});
        QStringList nulls;
        for (int i = 0; i < kind.texts.size(); ++i) {
            if (row.Fields(i).isNull()) nulls.append(kind.texts.at(i));
        }
        return nulls;
    }

    std::vector<RecordKind> kinds;
};

// A text member the object never read from a row is saved as an empty text, and so is
// the text a row of nulls reads as; no saved text column is left NULL.
TEST_P(RecordKindsTest, EveryRecordSavesItsEmptyTextsAsEmptyTexts) {
    for (const RecordKind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        ASSERT_FALSE(kind.texts.isEmpty());
        const QVariant key = kind.saveFresh();
        EXPECT_EQ(nullTexts(kind, key), QStringList()) << "saved by a fresh object";
        kind.readAndSave(key);
        // A row of nulls costs some records a report on reading; those have tests of their own.
        takeReports();
        EXPECT_EQ(nullTexts(kind, key), QStringList()) << "read and saved again";
    }
}

// A key without a row (0 among them): the plan and the drug take key 0, the others keep
// it; the coverage reads its date from no row, which is one report.
TEST_P(RecordKindsTest, AKeyWithoutARowLeavesTheKeyOrZeroesIt) {
    const QStringList zeroing{"clsINSURANCE", "clsDrug"};
    for (const RecordKind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        for (const int key : {0, 30000}) {
            const bool zeroes = zeroing.contains(QLatin1String(kind.name));
            EXPECT_EQ(kind.keyAfterGetData(key).toInt(), zeroes ? 0 : key);
            const QStringList reports = takeReports();
            EXPECT_EQ(reports,
                      kind.name == QLatin1String("PATINS")
                          ? QStringList{test::reportOf("PATINS:GetData", err::NoCurrentRecord)}
                          : QStringList());
        }
    }
}

TVRX_BACKENDS(RecordKindsTest);

}  // namespace
}  // namespace tvrx
