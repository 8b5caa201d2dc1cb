#include "eligibility/EligibilityFixture.h"
#include "reports/RecordingDocument.h"

namespace tvrx {
namespace {

class EligibilityAnswerTest : public test::EligibilityFixture {
protected:
    // Resets the plans, the directory and the preview for the case.
    void arrange(const test::KeywordCase& c) {
        db->Execute(QStringLiteral("DELETE FROM PATINS"));
        db->Execute(QStringLiteral("DELETE FROM INSURANCE"));
        reporter->clear();
        for (const QStringList& plan : c.all("plan")) addPlan(plan);
        directory = std::make_shared<PlanLookupScript>();
        mdlMain::PlanLookups.set(directory->factory());
        for (const QStringList& found : c.all("directory")) {
            PlanEntry plan;
            plan.BIN = found.value(0);
            plan.ProcessorNumber = found.value(1);
            directory->answer(found.value(0) == "none" ? std::nullopt : std::optional(plan));
        }
        face = std::make_shared<ScriptedPreviewFace>();
        face->onShow([this](frmPrint& form) {
            buttons.clear();
            for (const frmPrint::SideButton& button : form.sideButtons())
                if (button.Enabled) buttons.append(button.Name);
        });
        setPreviewFace(face);
    }

    QString expectedReport(const QString& name) const {
        QFile file(answers + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return QString::fromUtf8(file.readAll()).chopped(file.size() > 0 ? 1 : 0);
    }

    QStringList buttons;
};

QStringList flagsOn(const clsPatient::EligibilityState& s) {
    QStringList on;
    for (const auto& [name, value] : {std::pair{"PrimaryConfigured", s.PrimaryConfigured},
                                      {"PatientPrimaryConfigured", s.PatientPrimaryConfigured},
                                      {"PrimaryLookupAvailable", s.PrimaryLookupAvailable},
                                      {"SecondaryConfigured", s.SecondaryConfigured},
                                      {"PatientSecondaryConfigured", s.PatientSecondaryConfigured},
                                      {"SecondaryLookupAvailable", s.SecondaryLookupAvailable}})
        if (value) on.append(QString::fromLatin1(name));
    return on;
}

QStringList valuesOf(const clsPatient::NamedPlan& p) {
    QStringList values{p.BIN, p.PCN, p.GroupNumber, p.MemberID, p.PersonCode, p.InsPhone};
    while (!values.isEmpty() && values.last().isEmpty()) values.removeLast();
    return values;
}

QStringList joined(const QList<QStringList>& lines) {
    QStringList all;
    for (const QStringList& line : lines) all.append(line.join(u' '));
    return all;
}

TEST_P(EligibilityAnswerTest, EachAnswerGivesItsReportFlagsAndValues) {
    QList<test::KeywordCase> cases;
    for (const test::DataRow& row : test::dataRows("eligibility-answers.tsv")) {
        if (row.cells[0] == "reject")
            db->Execute(QStringLiteral("INSERT INTO Reject VALUES (?, ?)"),
                        {row.cells[1], row.cells[2]});
        if (row.cells[0] == "case") cases.append({row.where, {}});
        if (!cases.isEmpty()) cases.last().lines.append(row.cells);
    }
    for (const test::KeywordCase& c : cases) {
        SCOPED_TRACE(c.where);
        arrange(c);
        const QStringList expect = c.first("expect");
        const clsPatient patient = answered(c.first("answer").value(0), expect.value(0) == "1");
        const clsPatient::EligibilityState& state = patient.eligibilityState();
        EXPECT_EQ(patient.ErrorMessage(), expect.value(1));
        EXPECT_EQ(flagsOn(state).join(u' '), joined(c.all("on")).join(u' '));
        for (const QStringList& values : c.all("values")) {
            EXPECT_EQ(valuesOf(values[0] == "Primary" ? state.Primary : state.Secondary),
                      values.mid(1));
        }
        QStringList searched;
        for (const PlanLookupScript::Made& made : directory->made()) searched += made.searches;
        EXPECT_EQ(searched, joined(c.all("searched")));
        QStringList reports;
        for (const ErrorReport& report : reporter->reports())
            reports.append(report.location + u' ' + report.number);
        EXPECT_EQ(reports, joined(c.all("reports")));

        const QString report = c.first("report").value(0);
        ASSERT_EQ(face->shown().size(), report.isEmpty() ? 0 : 1);
        if (report.isEmpty()) continue;
        const auto* doc = dynamic_cast<const RecordingDocument*>(face->shown()[0].document.get());
        ASSERT_NE(doc, nullptr);
        EXPECT_EQ(doc->plainText(), expectedReport(report));
        QStringList styles;
        for (const RecordingDocument::Run& run : doc->runs()) {
            styles.append((run.bold ? "B" : "n") + QString::number(run.size) +
                          (run.colour == 255 ? "r"
                           : run.colour == 0 ? "k"
                                             : "?"));
        }
        EXPECT_EQ(styles, c.first("styles"));
        EXPECT_EQ(buttons, c.first("buttons"));
    }
}

TEST_P(EligibilityAnswerTest, AnEmptyRejectTableRefusesTheAnswer) {
    const clsPatient patient = answered(QStringLiteral("two-plans.txt"), false);
    EXPECT_EQ(patient.ErrorMessage(), "No Reject Codes Found. Contact technical support.");
    EXPECT_TRUE(face->shown().isEmpty());
}

TVRX_BACKENDS(EligibilityAnswerTest);

}  // namespace
}  // namespace tvrx
