#pragma once

#include "prescription/ClinicalKnowledge.h"
#include "prescription/ClinicalScreening.h"

#include <QList>

namespace tvrx {

// The screens of the demonstration engine, over the built-in knowledge. Demonstration
// data, not for clinical use.
//
// An interaction finding is one pair of the knowledge between the two drugs; its
// description is the heading the fill was submitted with, a dash and the pair's title,
// and its documentation ends with the sources the texts rest on. An NDC it does not know
// screens clean; a drug never interacts with itself or through an ingredient it shares.
class DemoInteractionScreen : public InteractionScreen {
public:
    explicit DemoInteractionScreen(
        const ClinicalKnowledge& knowledge = ClinicalKnowledge::demonstration());

    // True when the submission found something.
    bool Submit(const QString& ndc, const QString& otherNdc, const QString& heading) override;
    qint32 Count() const override;
    InteractionResult Item(qint32 index) const override;

private:
    const ClinicalKnowledge& knowledge_;
    QList<InteractionResult> results_;
};

// An allergy finding names the patient's allergy as recorded, its code, the drug as the
// fill names it and the classes through which the allergy covers the drug.
class DemoAllergyScreen : public AllergyScreen {
public:
    explicit DemoAllergyScreen(
        const ClinicalKnowledge& knowledge = ClinicalKnowledge::demonstration());

    bool Submit(const QString& code, const QString& allergies, const QString& ndc,
                const QString& drug) override;
    void Check() override;
    qint32 Count() const override;
    AllergyResult Item(qint32 index) const override;

private:
    struct Submitted {
        QString code;
        QString allergies;
        QString ndc;
        QString drug;
    };

    const ClinicalKnowledge& knowledge_;
    QList<Submitted> pending_;
    QList<AllergyResult> results_;
};

}  // namespace tvrx
