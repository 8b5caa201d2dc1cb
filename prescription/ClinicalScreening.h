#pragma once

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QList>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>

namespace tvrx {

// One finding of the interaction screen: the seven texts of its printed report.
struct InteractionResult {
    QString Description;
    QString Documentation;
    QString Onset;
    // "MAJOR", "MODERATE" or "MINOR".
    QString Severity;
    QString Effects;
    QString Management;
    QString Mechanisms;
};

// One finding of the allergy screen: the patient's allergy and its code, the drug and the
// class through which the allergy covers it.
struct AllergyResult {
    QString Allergy;
    QString Code;
    QString Drug;
    QString Class;
    // The four, one per line, as the alert box shows them.
    QString text() const;
};

// The interaction screen: a fill's drug is submitted against each of the patient's other
// fills, and the findings gather over every submission of one object. A host may plug in
// a licensed engine through the session's factory; one object serves one operation.
class InteractionScreen {
public:
    virtual ~InteractionScreen() = default;
    // NDCs are 11 digits without hyphens; the heading names the other fill. The answer is
    // the engine's own and means nothing to the caller.
    virtual bool Submit(const QString& ndc, const QString& otherNdc, const QString& heading) = 0;
    virtual qint32 Count() const = 0;
    // 1 to Count; any other index fails with 9.
    virtual InteractionResult Item(qint32 index) const = 0;
};

// The allergy screen: each of the patient's allergies is submitted with the fill's drug
// and then checked; the findings gather over every check of one object.
class AllergyScreen {
public:
    virtual ~AllergyScreen() = default;
    virtual bool Submit(const QString& code, const QString& allergies, const QString& ndc,
                        const QString& drug) = 0;
    // Screens what was submitted since the last check.
    virtual void Check() = 0;
    virtual qint32 Count() const = 0;
    virtual AllergyResult Item(qint32 index) const = 0;
};

// The item of a 1-based index, as the screens give them; any other index fails with 9.
template <class Result>
Result screeningItem(const QList<Result>& results, qint32 index) {
    if (index < 1 || index > results.size()) fail(err::SubscriptOutOfRange);
    return results.at(index - 1);
}

// New screens of the kind the session's factories make (mdlMain::InteractionScreens and
// mdlMain::AllergyScreens); the demonstration engine when no host installed one.
std::shared_ptr<InteractionScreen> createInteractionScreen();
std::shared_ptr<AllergyScreen> createAllergyScreen();

}  // namespace tvrx
