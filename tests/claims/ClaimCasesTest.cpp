#include "claims/ClaimReader.h"
#include "claims/PlanRows.h"
#include "claims/Wrapper.h"
#include "prescription/clsPrescription.h"
#include "records/clsPatient.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/text/ClaimNotation.h"
#include "support/DataRows.h"
#include "support/Notation.h"
#include "support/SchemaFixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

// The claim builders run as a host runs them, on a small pharmacy of their own
// (tests/claims/pharmacy): one plan of each Form, a patient covered by each, a
// prescription on each plan, two compounds. Each case of tests/claims/cases/<file>.json
// changes rows for itself, builds a header, a claim body or a reversal, and names the
// exact text, the boxes in order and the reports. The changes of a case are rolled back
// before the next one.
//
//   "build": "header" | "claim" | "reversal"      "rx": RXInfoID, or a list for a header
//   "set": [[table, key, column, value], ...]      "delete": [[table, key], ...]
//   "insert": [[table, {column: value}], ...]      "other", "debug": the builder's flags
//   "planColumns": the columns of the plan row instead of INSURANCE.* and the coverage's
//   "answers": ["Yes", "No"] (otherwise OK to each box)   "expect": [text pieces in notation]
//   "boxes": ["text | buttons | icon | default | title"]   "reports": ["label number"]
//   "host": {"Price": -1} amounts the host sets on the prescription after reading it (a
//   negative stored amount does not read); {"Birthdate": null} leaves the patient's
//   birthdate without a date      "retail": its RetailPrice afterwards
class ClaimCasesTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPrescription().setConnection(db);
        loadClaimsPharmacy();
    }

    void runCases(const QString& fileName) {
        QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/claims/cases/") + fileName);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << fileName.toStdString();
        const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
        ASSERT_FALSE(cases.isEmpty()) << fileName.toStdString();
        for (const auto& entry : cases) runCase(entry.toObject());
    }

    static std::unique_ptr<clsPrescription> loaded(qint32 id) {
        auto rx = std::make_unique<clsPrescription>();
        rx->RXInfoID = id;
        rx->PrescriptionType = EditRx;
        rx->GetData();
        return rx;
    }

private:
    static QString keyColumn(const QString& table) {
        static const QHash<QString, QString> keys{
            {"INSURANCE", "InsID"},         {"PATINS", "PatInsID"},
            {"PATIENT", "PatientID"},       {"PHYSIC", "MDID"},
            {"RXINFO", "RXInfoID"},         {"Options", "OptionsID"},
            {"Ingredients", "IngredientID"}};
        return keys.value(table);
    }

    // A JSON value as the database takes it: null is NULL, a whole number an integer.
    static QVariant bound(const QJsonValue& value) {
        if (value.isNull()) return {};
        const double number = value.toDouble();
        if (value.isDouble() && number == std::trunc(number)) {
            return QVariant(static_cast<qlonglong>(number));
        }
        return value.toVariant();
    }

    void change(const QJsonObject& data) {
        for (const auto& item : data.value("set").toArray()) {
            const QJsonArray set = item.toArray();
            const QString table = set.at(0).toString();
            db->Execute(QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3 = ?")
                            .arg(table, set.at(2).toString(), keyColumn(table)),
                        {bound(set.at(3)), bound(set.at(1))});
        }
        for (const auto& item : data.value("delete").toArray()) {
            const QString table = item.toArray().at(0).toString();
            db->Execute(QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(table, keyColumn(table)),
                        {bound(item.toArray().at(1))});
        }
        for (const auto& item : data.value("insert").toArray()) {
            const QJsonObject row = item.toArray().at(1).toObject();
            QVariantList values;
            for (const QString& column : row.keys()) values.append(bound(row.value(column)));
            db->Execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(item.toArray().at(0).toString(), row.keys().join(u','),
                                 QStringList(row.size(), QStringLiteral("?")).join(u',')),
                        values);
        }
    }

    static PlanRows planRows(const QJsonObject& data, qint32 patInsID) {
        PlanRows rows = openPlanRows(patInsID);
        const QString columns = data.value("planColumns").toString();
        if (!columns.isEmpty()) {
            rows.rsIns = records::mainConnection().OpenRecordSet(
                QStringLiteral("SELECT %1 FROM PATINS INNER JOIN INSURANCE ON INSURANCE.InsID = "
                               "PATINS.InsID WHERE PATINS.PatInsID = ?")
                    .arg(columns),
                {patInsID});
        }
        return rows;
    }

    struct Built {
        QString text;
        double retail = 0;
    };

    Built build(const QJsonObject& data) {
        const QString kind = data.value("build").toString();
        const QJsonValue rx = data.value("rx");
        const QJsonArray ids = rx.isArray() ? rx.toArray() : QJsonArray{rx};
        const bool other = data.value("other").toBool();
        const bool debug = data.value("debug").toBool();
        if (kind == QLatin1String("header")) {
            Wrapper wrapper;
            for (qsizetype i = 0; i < ids.size(); ++i) {
                const auto item = i == 0 ? wrapper.colRX()->Item(1) : wrapper.colRX()->Add();
                item->RXInfoID = ids.at(i).toInt();
                item->GetData();
            }
            // A host may leave the patient's birthdate without a date.
            if (data.value("host").toObject().contains("Birthdate")) {
                wrapper.colRX()->Item(1)->PatientClass()->Birthdate = QDateTime();
            }
            PlanRows rows = planRows(data, wrapper.colRX()->Item(1)->PatInsID);
            return {wrapper.BuildHeader(rows.rsPatIns, rows.rsIns, other, debug)};
        }
        const auto prescription = loaded(ids.at(0).toInt());
        const QJsonObject host = data.value("host").toObject();
        for (const QString& name : host.keys()) {
            const double amount = host.value(name).toDouble();
            if (name == QLatin1String("Price")) {
                prescription->Price = amount;
            } else {
                EXPECT_EQ(name, QStringLiteral("OInsAmount"));
                prescription->OInsAmount = amount;
            }
        }
        PlanRows rows = planRows(data, prescription->PatInsID);
        const QString text = kind == QLatin1String("claim")
                                 ? prescription->BuildClaim(rows.rsIns, other, debug)
                                 : prescription->BuildReverseClaim(rows.rsIns, other);
        return {text, prescription->RetailPrice};
    }

    static QStringList texts(const QJsonValue& list) {
        QStringList all;
        for (const auto& item : list.toArray()) all.append(item.toString());
        return all;
    }

    void runCase(const QJsonObject& data) {
        SCOPED_TRACE(data.value("name").toString().toStdString());
        user->clear();
        reporter->clear();
        const QStringList boxes = texts(data.value("boxes"));
        const QStringList answers = texts(data.value("answers"));
        for (qsizetype i = 0; i < boxes.size(); ++i) {
            const QString answer = answers.value(i, QStringLiteral("OK"));
            user->answerMsgBox(answer == QLatin1String("No")    ? Answer::No
                               : answer == QLatin1String("Yes") ? Answer::Yes
                                                                : Answer::OK);
        }
        db->Execute(QStringLiteral("BEGIN"));
        change(data);
        const Built built = build(data);
        db->Execute(QStringLiteral("ROLLBACK"));

        EXPECT_EQ(toNotation(built.text),
                  toNotation(test::notated(texts(data.value("expect")).join(QString()))));
        QStringList shown;
        for (const auto& call : user->callsOf(Kind::MsgBox)) shown.append(call.args.join(" | "));
        EXPECT_EQ(shown, boxes);
        QStringList reported;
        for (const auto& report : reporter->reports()) {
            reported.append(report.location + u' ' + report.number);
        }
        EXPECT_EQ(reported, texts(data.value("reports")));
        if (data.contains("retail")) {
            EXPECT_DOUBLE_EQ(built.retail, data.value("retail").toDouble());
        }
    }
};

TEST_P(ClaimCasesTest, Headers) {
    runCases(QStringLiteral("headers.json"));
}

TEST_P(ClaimCasesTest, FixedBodies) {
    runCases(QStringLiteral("fixed-bodies.json"));
}

TEST_P(ClaimCasesTest, SegmentedBodies) {
    runCases(QStringLiteral("segmented-bodies.json"));
}

TEST_P(ClaimCasesTest, Reversals) {
    runCases(QStringLiteral("reversals.json"));
}

// The plan's DoctorID, a number or a word, picks the prescriber's number and qualifier
// (tests/data/doctor-ids.tsv); they are read back from a 5.1 claim's prescriber segment.
TEST_P(ClaimCasesTest, DoctorIDPicksNumberAndQualifier) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("doctor-ids.tsv"))) {
        SCOPED_TRACE(row.where);
        const QString stored = row.cells.at(0);
        db->Execute(QStringLiteral("UPDATE INSURANCE SET DoctorID = ? WHERE InsID = 5"),
                    {stored == QLatin1String("<null>") ? QVariant() : test::notated(stored)});
        const auto rx = loaded(5);
        PlanRows rows = openPlanRows(rx->PatInsID);
        const QString body = rx->BuildClaim(rows.rsIns);
        const QList<claims::Transaction> read =
            claims::readTransmission(body, QStringLiteral("51"));
        ASSERT_EQ(read.size(), 1);
        const claims::ReadField* qualifier = read.at(0).reading.find(u"EZ", u"AM03");
        const claims::ReadField* number = read.at(0).reading.find(u"DB", u"AM03");
        ASSERT_TRUE(qualifier != nullptr && number != nullptr);
        EXPECT_EQ(qualifier->value, row.cells.value(1));
        EXPECT_EQ(number->decoded.toString(), row.cells.value(2));
    }
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TVRX_BACKENDS(ClaimCasesTest);

}  // namespace
}  // namespace tvrx
