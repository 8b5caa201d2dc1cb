#include "eligibility/frmEligibility.h"
#include "support/DataRows.h"

namespace tvrx {
namespace {

TEST(EligibilityButtons, EachRowOfTheTable) {
    for (const test::DataRow& row : test::dataRows("eligibility-buttons.tsv")) {
        SCOPED_TRACE(row.where);
        ASSERT_EQ(row.cells.size(), 15);
        QStringList texts = row.cells.mid(0, 4);
        for (QString& text : texts) text = text == "-" ? "" : text == "_" ? "   " : text;
        const auto on = [&](int column) { return row.cells[column] == "1"; };
        clsPatient::EligibilityState state{on(4), on(5), on(6), on(7), on(8), on(9), {}, {}, {}};
        state.Primary.BIN = texts[0];
        state.Primary.PCN = texts[1];
        state.Secondary.BIN = texts[2];
        state.Secondary.PCN = texts[3];
        const EligibilityButtons expected{on(10), on(11), on(12), on(13), on(14)};
        EXPECT_EQ(eligibilityButtons(state), expected);
    }
}

}  // namespace
}  // namespace tvrx
