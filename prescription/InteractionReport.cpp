#include "prescription/InteractionReport.h"

#include "prescription/ClinicalScreening.h"
#include "reports/frmPrint.h"
#include "session/text/Conversions.h"

#include <QList>

namespace tvrx {

namespace {

// The two characters the report's texts break their lines with.
const QString kBreak = QStringLiteral("\\n");
constexpr qint32 kRed = 255;
constexpr qint32 kBlue = 16711680;
constexpr qint32 kBlack = 0;

struct SeverityStyle {
    QString word;
    bool bold;
    qint32 colour;
};

// How a severity is drawn; any other word is neither bold nor coloured.
SeverityStyle styleOf(const QString& severity) {
    static const QList<SeverityStyle> styles{{QStringLiteral("MAJOR"), true, kRed},
                                             {QStringLiteral("MODERATE"), true, kBlue},
                                             {QStringLiteral("MINOR"), true, kBlack}};
    for (const SeverityStyle& style : styles) {
        if (style.word == severity) return style;
    }
    return {severity, false, kBlack};
}

// A bold label and its text, not bold.
void labelled(PageDocument& document, const QString& label, const QString& text) {
    document.setFontBold(true);
    document.addText(label);
    document.setFontBold(false);
    document.addText(text);
}

}  // namespace

// The label of the description follows the bold heading without a change of weight; the
// colour a severity sets stays for the lines after it.
void drawInteractionFinding(PageDocument& document, const InteractionResult& result) {
    document.setFontBold(true);
    document.setFontSize(14);
    document.setTextColor(kRed);
    document.addText(result.Description + kBreak);
    document.addParagraph(QString(70, u'-'));
    document.setFontSize(12);
    document.setTextColor(kBlack);
    labelled(document, QStringLiteral("DESCRIPTION: "), result.Description + kBreak + kBreak);
    labelled(document, QStringLiteral("DOCUMENTATION: "), result.Documentation + kBreak);
    labelled(document, QStringLiteral("ONSET: "), result.Onset + kBreak);
    document.setFontBold(true);
    document.addText(QStringLiteral("SEVERITY: "));
    const SeverityStyle style = styleOf(result.Severity);
    document.setFontBold(style.bold);
    document.setTextColor(style.colour);
    document.addText(result.Severity + kBreak + kBreak);
    labelled(document, QStringLiteral("EFFECTS: "), conv::Trim(result.Effects) + kBreak);
    labelled(document, QStringLiteral("MANAGEMENT: "), conv::Trim(result.Management) + kBreak);
    labelled(document, QStringLiteral("MECHANISMS: "), conv::Trim(result.Mechanisms) + kBreak);
}

void drawInteractionReport(PageDocument& document, const InteractionResult& result,
                           const QString& device) {
    document.setDevice(device);
    document.StartDoc();
    drawInteractionFinding(document, result);
    document.EndDoc();
}

void printInteractionReport(const InteractionResult& result, const QString& device) {
    frmPrint form;
    drawInteractionReport(form.vp(), result, device);
    form.Show();
}

}  // namespace tvrx
