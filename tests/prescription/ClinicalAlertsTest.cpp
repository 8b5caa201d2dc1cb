#include "prescription/PrescriptionFixture.h"
#include "prescription/ScriptedScreening.h"
#include "reports/RecordingDocument.h"
#include "reports/ScriptedPreviewFace.h"
#include "session/runtime/Session.h"
#include "support/DataRows.h"

#include <QMap>

#include <algorithm>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

class ClinicalAlertsTest : public test::PrescriptionFixture {
protected:
    void SetUp() override {
        PrescriptionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        setPreviewFace(face);
        mdlMain::InteractionScreens.set([this] {
            ++screensMade;
            return interactions;
        });
        mdlMain::AllergyScreens.set([this] {
            ++screensMade;
            return allergies;
        });
    }

    // A fill of patient 7 and drug 5, as a host would screen it before saving it.
    std::unique_ptr<clsPrescription> candidate(qint32 logId = 0,
                                               const QString& dndc = QStringLiteral("")) const {
        auto rx = std::make_unique<clsPrescription>();
        rx->setPatientID(7);
        rx->setDrugID(5);
        rx->Drug = QStringLiteral("LISINOPRIL 10MG TAB");
        rx->LogID = logId;
        rx->DNDC = dndc;
        return rx;
    }

    void addFills(const QList<test::DataRow>& data) {
        QString fills = QStringLiteral(
            "RXInfoID\tNumber\tRefillNumber\tDate\tPatientID\tDNDC\tVoided\tDeleted\tDrugID\n");
        for (const test::DataRow& row : data) {
            if (row.cells[0] == u"fill") fills += row.cells.mid(1).join(u'\t') + "\t5\n";
        }
        rows("RXINFO", fills.toUtf8().constData());
    }

    QStringList submittedNdcs() const {
        QStringList ndcs;
        for (const auto& submission : interactions->submissions()) {
            ndcs.append(submission.otherNdc.isEmpty() ? QStringLiteral("(empty)")
                                                      : submission.otherNdc);
        }
        std::sort(ndcs.begin(), ndcs.end());
        return ndcs;
    }

    std::shared_ptr<ScriptedPreviewFace> face = std::make_shared<ScriptedPreviewFace>();
    std::shared_ptr<ScriptedInteractionScreen> interactions =
        std::make_shared<ScriptedInteractionScreen>();
    std::shared_ptr<ScriptedAllergyScreen> allergies = std::make_shared<ScriptedAllergyScreen>();
    int screensMade = 0;
};

TEST_P(ClinicalAlertsTest, ThePeriodAndOneFillChooseTheFillsScreened) {
    const QList<test::DataRow> data = test::dataRows(QStringLiteral("interaction-fills.tsv"));
    addFills(data);
    for (const test::DataRow& row : data) {
        if (row.cells[0] != u"screen") continue;
        interactions = std::make_shared<ScriptedInteractionScreen>();
        const auto rx = candidate();
        rx->ITXLookBack = static_cast<qint16>(row.cells[1].toInt());
        rx->OneFill = static_cast<qint16>(row.cells[2].toInt());
        EXPECT_FALSE(rx->Interactions()) << row.where;
        EXPECT_EQ(submittedNdcs().join(u' '), row.cells[3]) << row.where;
    }
    const auto rx = candidate();
    EXPECT_EQ(rx->ITXLookBack, 90) << "a new object looks back 90 days";
    interactions = std::make_shared<ScriptedInteractionScreen>();
    rx->ITXLookBack = 0;
    rx->Interactions();
    for (const auto& submission : interactions->submissions()) {
        EXPECT_EQ(submission.ndc, QStringLiteral("60731041101")) << "LogID 0: the drug's NDC";
        if (submission.otherNdc == u"101") {
            EXPECT_EQ(
                submission.heading,
                QStringLiteral("INTERACTION FOUND FOR RX 500 FILLED ON 3/14/2026 8:00:00 AM"));
        }
    }
    // A fill that went to a payer is screened with the NDC it went with, without hyphens.
    interactions = std::make_shared<ScriptedInteractionScreen>();
    candidate(3, QStringLiteral(" 12345-6789-01 "))->Interactions();
    EXPECT_EQ(interactions->submissions().value(0).ndc, QStringLiteral("12345678901"));
    EXPECT_TRUE(face->shown().isEmpty());
}

TEST_P(ClinicalAlertsTest, NoFillsInThePeriodMakeNoScreenAndNoReport) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tDate\tPatientID\tDNDC\n"
         "101\t500\t0\t2025-01-10 08:00:00\t7\t101\n");
    EXPECT_FALSE(candidate()->Interactions());
    EXPECT_FALSE(candidate()->Allergies());
    EXPECT_EQ(screensMade, 0);
    EXPECT_TRUE(face->shown().isEmpty());
}

// Three findings are three reports, shown one after the other in the order found, each
// drawn in the report's pieces and styles; the severity takes its word's style.
TEST_P(ClinicalAlertsTest, EachFindingIsAReportOfItsOwn) {
    rows("RXINFO",
         "RXInfoID\tNumber\tRefillNumber\tDate\tPatientID\tDNDC\n"
         "101\t500\t0\t2026-03-10 08:00:00\t7\t101\n"
         "102\t501\t0\t2026-03-11 08:00:00\t7\t102\n");
    const QList<test::DataRow> expected = test::dataRows(QStringLiteral("interaction-report.tsv"));
    const InteractionResult major{QStringLiteral("RX 500 - Opioids with benzodiazepines"),
                                  QStringLiteral("Established"),
                                  QStringLiteral("Rapid"),
                                  QStringLiteral("MAJOR"),
                                  QStringLiteral("  Deep sedation. "),
                                  QStringLiteral("Avoid. "),
                                  QStringLiteral(" Both depress breathing.")};
    interactions->findFor(QStringLiteral("101"), major);
    qsizetype findings = 1;
    for (const test::DataRow& row : expected) {
        if (row.cells[0] != u"severity") continue;
        InteractionResult other = major;
        other.Severity = row.cells[1].chopped(4);  // the word without its two line breaks
        other.Description = QStringLiteral("finding ") + other.Severity;
        interactions->findFor(QStringLiteral("102"), other);
        ++findings;
    }
    face->onShow(
        [](frmPrint& form) { EXPECT_EQ(form.vp().Device(), QStringLiteral("Counter Printer")); });
    auto rx = candidate();
    rx->PrintDevice = QStringLiteral("Counter Printer");
    EXPECT_FALSE(rx->Interactions());
    ASSERT_EQ(face->shown().size(), findings);

    // The reports by their description (the fills may come in any order), each piece of
    // text written as the data file writes it.
    QMap<QString, QStringList> reports;
    for (const auto& shown : face->shown()) {
        QStringList pieces;
        for (const auto& run : dynamic_cast<const RecordingDocument&>(*shown.document).runs()) {
            const bool text = run.kind == RecordingDocument::RunKind::Text;
            pieces.append(QStringList{text ? "Text" : "Paragraph", run.text,
                                      QString::number(run.bold), QString::number(run.size),
                                      QString::number(run.colour)}
                              .join(u'\t'));
        }
        reports.insert(pieces.value(0).section(u'\t', 1, 1), pieces);
    }
    QStringList expectedPieces;
    for (const test::DataRow& row : expected) {
        if (row.cells[0] != u"severity") {
            expectedPieces.append(row.cells.join(u'\t'));
            continue;
        }
        const QString severity =
            reports.value("finding " + row.cells[1].chopped(4) + "\\n").value(9);
        EXPECT_EQ(severity.section(u'\t', 1), row.cells.mid(1).join(u'\t')) << row.where;
    }
    EXPECT_EQ(reports.value(major.Description + "\\n"), expectedPieces);
}

// Each allergy is submitted with the fill's NDC and drug and then checked; each finding is
// a critical box of its own.
TEST_P(ClinicalAlertsTest, EachAllergyFindingIsAnAlertBox) {
    rows("PATALL",
         "PatAllID\tPatientID\tCode\tAllergies\n"
         "1\t7\tPCN\tPENICILLIN\n2\t7\tCOD\tCODEINE\n3\t8\tSULFA\tSULFONAMIDES\n");
    allergies->findFor(QStringLiteral("COD"),
                       {QStringLiteral("CODEINE"), QStringLiteral("COD"),
                        QStringLiteral("LISINOPRIL 10MG TAB"), QStringLiteral("OPIOIDS")});
    user->answerMsgBox(Answer::OK);
    EXPECT_FALSE(candidate()->Allergies());
    ASSERT_EQ(allergies->submissions().size(), 2);
    EXPECT_EQ(allergies->checks(), 2);
    QStringList submitted;
    for (const auto& s : allergies->submissions()) {
        submitted.append(QStringList{s.code, s.allergies, s.ndc, s.drug}.join(u'|'));
    }
    std::sort(submitted.begin(), submitted.end());
    EXPECT_EQ(submitted, QStringList({"COD|CODEINE|60731041101|LISINOPRIL 10MG TAB",
                                      "PCN|PENICILLIN|60731041101|LISINOPRIL 10MG TAB"}));
    const auto boxes = user->callsOf(Kind::MsgBox);
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].args, QStringList({"CODEINE\r\nCOD\r\nLISINOPRIL 10MG TAB\r\nOPIOIDS", "0",
                                          iconName(Icon::Critical), "1", "PATIENT ALLERGY ALERT"}));
    EXPECT_EQ(screensMade, 1) << "one screen for the whole operation";
}

TVRX_BACKENDS(ClinicalAlertsTest);

}  // namespace
}  // namespace tvrx
