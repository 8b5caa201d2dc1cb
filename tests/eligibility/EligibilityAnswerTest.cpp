#include "eligibility/EligibilityFixture.h"
#include "eligibility/frmEligibility.h"
#include "reports/RecordingDocument.h"

namespace tvrx {
namespace {

using AnswerCase = test::KeywordCase;

class EligibilityAnswerTest : public test::EligibilityFixture {
protected:
    void SetUp() override {
        EligibilityFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        for (const test::DataRow& row : test::dataRows("eligibility-answers.tsv")) {
            const QString keyword = row.cells.value(0);
            if (keyword == "reject") addReject(row.cells.value(1), row.cells.value(2));
            if (keyword == "case") cases.append({row.where, {}});
            if (!cases.isEmpty()) cases.last().lines.append(row.cells);
        }
    }

    void arrange(const AnswerCase& c) {
        db->Execute(QStringLiteral("DELETE FROM PATINS"));
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
        reporter->clear();
        restart();
        for (const QStringList& plan : c.all("plan")) {
            addPlan(plan.value(0), plan.value(1), plan.value(2), plan.value(3),
                    plan.value(4) == "attached");
        }
        for (const QStringList& found : c.all("directory")) {
            if (found.value(0) == "none") {
                directory->answer(std::nullopt);
                continue;
            }
            PlanEntry entry;
            entry.BIN = found.value(0);
            entry.ProcessorNumber = found.value(1);
            directory->answer(entry);
        }
        // The buttons as the form shows them.
        face->onShow([this](frmPrint& form) {
            shownButtons.clear();
            for (const frmPrint::SideButton& button : form.sideButtons())
                if (button.Enabled) shownButtons.append(button.Name);
        });
    }

    static QStringList flagsOn(const clsPatient& p) {
        const std::pair<const char*, bool> flags[] = {
            {"PrimaryConfigured", p.PrimaryConfigured()},
            {"PatientPrimaryConfigured", p.PatientPrimaryConfigured()},
            {"PrimaryLookupAvailable", p.PrimaryLookupAvailable()},
            {"SecondaryConfigured", p.SecondaryConfigured()},
            {"PatientSecondaryConfigured", p.PatientSecondaryConfigured()},
            {"SecondaryLookupAvailable", p.SecondaryLookupAvailable()},
        };
        QStringList on;
        for (const auto& [name, value] : flags)
            if (value) on.append(QString::fromLatin1(name));
        return on;
    }

    static QStringList valuesOf(const clsPatient::NamedPlan& plan) {
        QStringList values{plan.BIN,      plan.PCN,        plan.GroupNumber,
                           plan.MemberID, plan.PersonCode, plan.InsPhone};
        while (!values.isEmpty() && values.last().isEmpty()) values.removeLast();
        return values;
    }

    // What every eligibility report shares: its page, title, phone and tables.
    static void expectReportForm(const RecordingDocument& doc) {
        EXPECT_EQ(doc.Device(), "Front Counter");
        EXPECT_EQ(doc.documentSettings().Orientation, 1);
        EXPECT_EQ(doc.documentSettings().MarginLeft, 500);
        EXPECT_EQ(doc.documentSettings().MarginTop, 500);
        ASSERT_FALSE(doc.runs().isEmpty());
        const RecordingDocument::Run& title = doc.runs().first();
        EXPECT_TRUE(title.bold && title.size == 14 && title.colour == 255)
            << title.text.toStdString();
        for (qsizetype i = 0; i + 1 < doc.runs().size(); ++i) {
            if (doc.runs()[i].text != "HELP DESK PHONE NUMBER: ") continue;
            EXPECT_TRUE(doc.runs()[i].bold && doc.runs()[i].size == 12);
            EXPECT_EQ(doc.runs()[i + 1].colour, 255) << "the phone number is red";
        }
        for (const DocumentTable& table : doc.tables()) {
            EXPECT_EQ(table.width(), 11600);
            EXPECT_EQ(table.headerShade, 65535);
            EXPECT_EQ(table.bodyShade, 0xFFFFFF);
            EXPECT_EQ(table.header.value(0).join(u'|'),
                      "Plan|BIN|PCN|Group #|ID|Per Code|Ins Phone");
        }
    }

    QList<AnswerCase> cases;
    QStringList shownButtons;
};

TEST_P(EligibilityAnswerTest, EachAnswerGivesItsReportFlagsAndValues) {
    for (const AnswerCase& c : cases) {
        SCOPED_TRACE(c.where);
        arrange(c);
        clsPatient patient = loadedPatient();
        const bool result = patient.ParseClaimFile(answerFile(c.first("answer").value(0)));

        const QStringList expect = c.first("expect");
        EXPECT_EQ(result, expect.value(0) == "1");
        EXPECT_EQ(patient.ErrorMessage(), expect.value(1));
        QStringList on;
        for (const QStringList& line : c.all("on")) on += line;
        EXPECT_EQ(flagsOn(patient), on);
        for (const QStringList& values : c.all("values")) {
            const bool primary = values.value(0) == "Primary";
            const clsPatient::EligibilityState& state = patient.eligibilityState();
            EXPECT_EQ(valuesOf(primary ? state.Primary : state.Secondary), values.mid(1))
                << values.value(0).toStdString();
        }
        QStringList searched;
        for (const PlanLookupScript::Made& made : directory->made()) searched += made.searches;
        QStringList expectedSearches;
        for (const QStringList& line : c.all("searched")) expectedSearches += line.value(0);
        EXPECT_EQ(searched, expectedSearches);
        QStringList reports;
        for (const ErrorReport& report : reporter->reports())
            reports.append(report.location + u' ' + report.number);
        QStringList expectedReports;
        for (const QStringList& line : c.all("reports")) expectedReports += line.join(u' ');
        EXPECT_EQ(reports, expectedReports);

        const QString reportFile = c.first("report").value(0);
        ASSERT_EQ(face->shown().size(), reportFile.isEmpty() ? 0 : 1);
        if (reportFile.isEmpty()) continue;
        EXPECT_EQ(face->shown().first().caption, "Eligibility Report");
        const auto* doc =
            dynamic_cast<const RecordingDocument*>(face->shown().first().document.get());
        ASSERT_NE(doc, nullptr);
        EXPECT_EQ(doc->plainText(), expectedText(reportFile));
        expectReportForm(*doc);
        EXPECT_EQ(shownButtons, c.first("buttons"));
    }
}

// Without a Reject table's rows nothing is read: the answer is refused before any report.
TEST_P(EligibilityAnswerTest, AnEmptyRejectTableRefusesTheAnswer) {
    db->Execute(QStringLiteral("DELETE FROM Reject"));
    clsPatient patient = loadedPatient();
    EXPECT_FALSE(patient.ParseClaimFile(answerFile(QStringLiteral("two-plans.txt"))));
    EXPECT_EQ(patient.ErrorMessage(), "No Reject Codes Found. Contact technical support.");
    EXPECT_TRUE(face->shown().isEmpty());
}

TVRX_BACKENDS(EligibilityAnswerTest);

}  // namespace
}  // namespace tvrx
