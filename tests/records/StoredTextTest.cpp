#include "prescription/clsPrescription.h"
#include "records/Facility.h"
#include "records/PATINS.h"
#include "records/PropertyCases.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsINSURANCE.h"
#include "records/clsPatient.h"

#include <functional>

namespace tvrx {
namespace {

// A record kind as this test drives it: its table, the text columns its Update writes
// (taken from its description), how a fresh object makes and saves its row, and how an
// object reads that row and saves it again.
struct RecordKind {
    const char* name;
    QString table;
    QString key;
    QStringList texts;
    std::function<QVariant()> saveFresh;
    std::function<void(const QVariant&)> readAndSave;
};

template <class Record, class Key>
RecordKind kind(const char* name, const ColumnTable<Record>& table, Key Record::*keyMember,
                std::function<void(Record&)> makeRow) {
    QStringList texts;
    for (const auto& column : table.columns()) {
        if (column.property.type == ValueType::Text &&
            column.write.kind != WriteForm::Kind::NotWritten)
            texts.append(column.name);
    }
    return {name,
            table.table(),
            table.key(),
            texts,
            [=] {
                Record fresh;
                makeRow(fresh);
                fresh.Update();
                return QVariant(fresh.*keyMember);
            },
            [=](const QVariant& key) {
                Record read;
                read.*keyMember = key.value<Key>();
                read.GetData();
                read.Update();
            }};
}

class StoredTextTest : public test::NoStrayReports<test::SchemaFixture> {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        Facility().setConnection(db);
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
};

// A text member the object never read from a row is saved as an empty text, and so is
// the text a row of nulls reads as; no saved text column is left NULL.
TEST_P(StoredTextTest, EveryRecordSavesItsEmptyTextsAsEmptyTexts) {
    using Doc = clsDoc;
    const RecordKind kinds[] = {
        kind<PATINS>("PATINS", patinsColumns(), &PATINS::PatInsID, [](PATINS& r) { r.Insert(); }),
        kind<clsINSURANCE>("clsINSURANCE", insuranceColumns(), &clsINSURANCE::InsID,
                           [this](clsINSURANCE& r) {
                               user->answerMsgBox(Answer::No);
                               bool found = false;
                               r.Insert(QStringLiteral("4512345"), found);
                           }),
        kind<clsPatient>("clsPatient", patientColumns(), &clsPatient::PatientID,
                         [](clsPatient& r) { r.Insert(); }),
        kind<Doc>("clsDoc", docColumns(), &Doc::MDID, [](Doc& r) { r.Insert(); }),
        kind<clsDrug>("clsDrug", drugColumns(), &clsDrug::DrugID, [](clsDrug& r) { r.Insert(); }),
        kind<Facility>("Facility", facilityColumns(), &Facility::FacilityID,
                       [](Facility& r) { r.Insert(); }),
        kind<clsPrescription>("clsPrescription", prescriptionColumns(), &clsPrescription::RXInfoID,
                              [this](clsPrescription& r) {
                                  r.RXInfoID = db->Scalar(db->dialect().insertEmptyRow(
                                                              QStringLiteral("RXINFO"),
                                                              QStringLiteral("RXInfoID")))
                                                   .toInt();
                              }),
    };
    for (const RecordKind& kind : kinds) {
        SCOPED_TRACE(kind.name);
        ASSERT_FALSE(kind.texts.isEmpty());
        const QVariant key = kind.saveFresh();
        EXPECT_EQ(nullTexts(kind, key), QStringList()) << "saved by a fresh object";
        kind.readAndSave(key);
        // A row of nulls costs some records a report on reading; those have tests of their own.
        reporter->clear();
        EXPECT_EQ(nullTexts(kind, key), QStringList()) << "read and saved again";
    }
}

TVRX_BACKENDS(StoredTextTest);

}  // namespace
}  // namespace tvrx
