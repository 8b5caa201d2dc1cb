#pragma once

#include "prescription/ClinicalScreening.h"

#include <QList>
#include <QMultiMap>

namespace tvrx {

// Screens played by a script, for tests: each remembers what was submitted and finds what
// the script says for it.
class ScriptedInteractionScreen : public InteractionScreen {
public:
    struct Submission {
        QString ndc;
        QString otherNdc;
        QString heading;
    };

    // A submission against this other NDC finds the result (once per submission).
    void findFor(const QString& otherNdc, const InteractionResult& result);
    const QList<Submission>& submissions() const { return submissions_; }

    bool Submit(const QString& ndc, const QString& otherNdc, const QString& heading) override;
    qint32 Count() const override;
    InteractionResult Item(qint32 index) const override;

private:
    QMultiMap<QString, InteractionResult> script_;
    QList<Submission> submissions_;
    QList<InteractionResult> results_;
};

class ScriptedAllergyScreen : public AllergyScreen {
public:
    struct Submission {
        QString code;
        QString allergies;
        QString ndc;
        QString drug;
    };

    // A check after a submission of this code finds the result.
    void findFor(const QString& code, const AllergyResult& result);
    const QList<Submission>& submissions() const { return submissions_; }
    int checks() const { return checks_; }

    bool Submit(const QString& code, const QString& allergies, const QString& ndc,
                const QString& drug) override;
    void Check() override;
    qint32 Count() const override;
    AllergyResult Item(qint32 index) const override;

private:
    QMultiMap<QString, AllergyResult> script_;
    QList<Submission> submissions_;
    qsizetype checked_ = 0;
    int checks_ = 0;
    QList<AllergyResult> results_;
};

}  // namespace tvrx
