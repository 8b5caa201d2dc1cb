#include "eligibility/frmEligibility.h"
#include "support/DataRows.h"

namespace tvrx {
namespace {

QString valueOf(const QString& cell) {
    if (cell == "-") return {};
    if (cell == "_") return QStringLiteral("   ");
    return cell;
}

TEST(EligibilityButtons, EachRowOfTheTable) {
    for (const test::DataRow& row : test::dataRows("eligibility-buttons.tsv")) {
        SCOPED_TRACE(row.where);
        ASSERT_EQ(row.cells.size(), 15);
        const auto on = [&](int column) { return row.cells.value(column) == "1"; };
        clsPatient::EligibilityState state;
        state.Primary.BIN = valueOf(row.cells[0]);
        state.Primary.PCN = valueOf(row.cells[1]);
        state.Secondary.BIN = valueOf(row.cells[2]);
        state.Secondary.PCN = valueOf(row.cells[3]);
        state.PrimaryConfigured = on(4);
        state.PatientPrimaryConfigured = on(5);
        state.PrimaryLookupAvailable = on(6);
        state.SecondaryConfigured = on(7);
        state.PatientSecondaryConfigured = on(8);
        state.SecondaryLookupAvailable = on(9);
        const EligibilityButtons expected{on(10), on(11), on(12), on(13), on(14)};
        EXPECT_EQ(eligibilityButtons(state), expected);
    }
}

// The form's captions as they stand, and a form without a patient keeps its buttons off.
TEST(EligibilityButtons, TheFormShowsItsButtonsInOrder) {
    frmEligibility form;
    form.Form_Load();
    form.ConfigureButtons();
    QStringList shown;
    for (const frmPrint::SideButton& button : form.sideButtons()) {
        EXPECT_FALSE(button.Enabled) << button.Name.toStdString();
        shown.append(button.Name + u'=' + button.Caption);
    }
    EXPECT_EQ(shown, (QStringList{"cmdAddPrimary=Add P&rmary Ins",
                                  "cmdAddPrimaryPatient=&Add Prmary Ins to Patient",
                                  "cmdAddSecondary=Add &Sec Ins",
                                  "cmdAddSecondaryPatient=Add Sec &Ins to Patient",
                                  "cmdConfigLink=Config Pri-Sec &Link"}));
    EXPECT_EQ(form.Caption, "Eligibility Report");
    EXPECT_EQ(form.cmdClose.Caption, "&Close");
}

}  // namespace
}  // namespace tvrx
