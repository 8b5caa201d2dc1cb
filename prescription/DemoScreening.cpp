#include "prescription/DemoScreening.h"

namespace tvrx {

DemoInteractionScreen::DemoInteractionScreen(const ClinicalKnowledge& knowledge)
    : knowledge_(knowledge) {}

bool DemoInteractionScreen::Submit(const QString& ndc, const QString& otherNdc,
                                   const QString& heading) {
    const auto pairs = knowledge_.between(ndc, otherNdc);
    for (const ClinicalKnowledge::Interaction* pair : pairs) {
        results_.append({heading + QStringLiteral(" - ") + pair->title,
                         pair->documentation + QStringLiteral(". ") + knowledge_.sourceNote(*pair),
                         pair->onset, pair->severity, pair->effects, pair->management,
                         pair->mechanisms});
    }
    return !pairs.isEmpty();
}

qint32 DemoInteractionScreen::Count() const {
    return static_cast<qint32>(results_.size());
}

InteractionResult DemoInteractionScreen::Item(qint32 index) const {
    return screeningItem(results_, index);
}

DemoAllergyScreen::DemoAllergyScreen(const ClinicalKnowledge& knowledge) : knowledge_(knowledge) {}

bool DemoAllergyScreen::Submit(const QString& code, const QString& allergies, const QString& ndc,
                               const QString& drug) {
    pending_.append({code, allergies, ndc, drug});
    return true;
}

void DemoAllergyScreen::Check() {
    for (const Submitted& allergy : std::as_const(pending_)) {
        const QStringList hits = knowledge_.allergyHits(allergy.code, allergy.ndc);
        if (hits.isEmpty()) continue;
        results_.append(
            {allergy.allergies, allergy.code, allergy.drug, hits.join(QStringLiteral(", "))});
    }
    pending_.clear();
}

qint32 DemoAllergyScreen::Count() const {
    return static_cast<qint32>(results_.size());
}

AllergyResult DemoAllergyScreen::Item(qint32 index) const {
    return screeningItem(results_, index);
}

}  // namespace tvrx
