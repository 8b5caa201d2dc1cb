#include "prescription/ScriptedScreening.h"

#include <algorithm>

namespace tvrx {

namespace {

// The script's results for a key, in the order they were given.
template <class Result>
QList<Result> scripted(const QMultiMap<QString, Result>& script, const QString& key) {
    QList<Result> found = script.values(key);
    std::reverse(found.begin(), found.end());
    return found;
}

}  // namespace

void ScriptedInteractionScreen::findFor(const QString& otherNdc, const InteractionResult& result) {
    script_.insert(otherNdc, result);
}

bool ScriptedInteractionScreen::Submit(const QString& ndc, const QString& otherNdc,
                                       const QString& heading) {
    submissions_.append({ndc, otherNdc, heading});
    const QList<InteractionResult> found = scripted(script_, otherNdc);
    results_.append(found);
    return !found.isEmpty();
}

qint32 ScriptedInteractionScreen::Count() const {
    return static_cast<qint32>(results_.size());
}

InteractionResult ScriptedInteractionScreen::Item(qint32 index) const {
    return screeningItem(results_, index);
}

void ScriptedAllergyScreen::findFor(const QString& code, const AllergyResult& result) {
    script_.insert(code, result);
}

bool ScriptedAllergyScreen::Submit(const QString& code, const QString& allergies,
                                   const QString& ndc, const QString& drug) {
    submissions_.append({code, allergies, ndc, drug});
    return true;
}

void ScriptedAllergyScreen::Check() {
    ++checks_;
    for (; checked_ < submissions_.size(); ++checked_) {
        results_.append(scripted(script_, submissions_[checked_].code));
    }
}

qint32 ScriptedAllergyScreen::Count() const {
    return static_cast<qint32>(results_.size());
}

AllergyResult ScriptedAllergyScreen::Item(qint32 index) const {
    return screeningItem(results_, index);
}

}  // namespace tvrx
