#pragma once

#include <QString>

namespace tvrx {

class PageDocument;
struct InteractionResult;

// Draws the report of one interaction finding: the description as a red heading over a
// line of 70 hyphens, then the seven texts under their bold labels, the severity in its
// colour (MAJOR red, MODERATE blue, MINOR black).
void drawInteractionReport(PageDocument& document, const InteractionResult& result,
                           const QString& device);

// Draws the report on a new preview form and shows it until the user closes it.
void printInteractionReport(const InteractionResult& result, const QString& device);

}  // namespace tvrx
