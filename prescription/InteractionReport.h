#pragma once

#include <QString>

namespace tvrx {

class PageDocument;
struct InteractionResult;

// Draws the report of one interaction finding: the description as a red heading over a
// line of 70 hyphens, then the seven texts under their bold labels, the severity in its
// colour (MAJOR red, MODERATE blue, MINOR black). The document is begun and ended here.
void drawInteractionReport(PageDocument& document, const InteractionResult& result,
                           const QString& device);
// The same report drawn where the document stands, without beginning or ending it.
void drawInteractionFinding(PageDocument& document, const InteractionResult& result);

// Draws the report on a new preview form and shows it until the user closes it.
void printInteractionReport(const InteractionResult& result, const QString& device);

}  // namespace tvrx
