#include "claims/ClaimLayout.h"
#include "claims/ClaimSources.h"
#include "claims/Layouts.h"
#include "claims/PlanRows.h"
#include "prescription/clsPrescription.h"
#include "responses/TextPositions.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

// The reversal of a prescription's claim: one text with its own head. The main plan's
// Form picks the layout; only a "51" reversal to the other insurance carries the other
// plan's identifiers. The builder changes nothing; a failure in the text empties it.
namespace tvrx {

namespace {

using V = claims::Value;

constexpr qsizetype kProductLength = 11;

// The product number without its hyphens: "12345-6789-01" is cut by position into
// "12345678901", whatever the text holds.
QString reversalProduct(const QString& dispensed) {
    QString trimmed = conv::Trim(dispensed);
    if (trimmed.isEmpty()) return {};
    if (trimmed.size() == kProductLength) return trimmed;
    return dispensed.left(5) + response::mid(dispensed, 7, 4).toString() + dispensed.right(2);
}

}  // namespace

QString clsPrescription::BuildReverseClaim(RecordSet& rsIns, bool SendingOther) {
    Frame frame("clsPrescription:BuildReverseClaim");
    claims::Values values;
    frame([&] { values[V::ReversalProduct].text = reversalProduct(DNDC); });
    // The box of an other insurance not found cannot be silenced here.
    RecordSet otherRow;
    if (SendingOther && !claims::openOtherInsurance(frame, OPatInsID, otherRow)) return {};
    RecordSet& working = SendingOther ? otherRow : rsIns;
    QString qualifier;
    frame([&] {
        qualifier = conv::Trim(claims::columnText(working, QStringLiteral("IDQualifier")));
    });
    if (qualifier.isEmpty()) qualifier = QStringLiteral("07");

    QString form;
    frame([&] { form = claims::columnText(rsIns, QStringLiteral("Form")); });
    const claims::Layout& layout = claims::reversalLayout(form);
    RecordSet& plan = layout.name == QLatin1String("51") ? working : rsIns;
    const auto column = [&](V value, const char* name) {
        values.setText(value, [&] { return claims::columnText(plan, QString::fromLatin1(name)); });
    };
    column(V::BIN, "BIN");
    column(V::PlanForm, "Form");
    column(V::ProcNumb, "ProcNumb");
    column(V::PlanID, "ID");
    if (layout.name == QLatin1String("51")) column(V::VendorID, "VendorID");
    values.setNumber(V::IDQualifier, [&] { return conv::Val(qualifier); });
    values[V::FillDate].date = DateFilled;
    values[V::Number].number = Number;
    values[V::DURConflict].text = DURConflict;
    values[V::DURIntervention].text = DURIntervention;
    values[V::DUROutcome].text = DUROutcome;

    QString text;
    claims::writeLayout(text, layout, values, frame, claims::FailurePolicy::EmptyResult);
    return text;
}

}  // namespace tvrx
