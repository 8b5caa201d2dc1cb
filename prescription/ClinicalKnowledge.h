#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

namespace tvrx {

// The demonstration engine's knowledge: drugs by NDC with their ingredients, each
// ingredient's classes, interacting pairs of ingredients or classes with the texts of
// their reports, allergy codes with the ingredients or classes they cover, and the
// published sources the texts cite. Demonstration data, not for clinical use: a few dozen
// drugs and thirty pairs, written for the sample pharmacy (docs/CLINICAL.md).
//
// It is read from five tab-separated files (db/reference/clinical_*.tsv), which travel
// inside the library. A term is an ingredient ("warfarin") or a class ("NSAIDS").
class ClinicalKnowledge {
public:
    struct Interaction {
        QString first;
        QString second;
        QString severity;
        QString title;
        QString documentation;
        QString onset;
        QString effects;
        QString management;
        QString mechanisms;
        QStringList sources;
    };
    struct Source {
        QString shortName;
        QString citation;
    };

    // The files by name ("clinical_drugs.tsv" ...).
    static ClinicalKnowledge read(const QMap<QString, QString>& files);
    // The files built into the library.
    static QMap<QString, QString> builtInFiles();
    // The built-in knowledge, read once.
    static const ClinicalKnowledge& demonstration();

    // What is wrong with the data, one line each: files that cannot be read, terms that
    // are not known, missing texts, severities other than the three words, sources that
    // are not listed. Empty when it is consistent.
    const QStringList& problems() const { return problems_; }

    // The pairs between two drugs, each once, in the order of the file. None for an NDC it
    // does not know, for the same NDC, or between an ingredient and itself.
    QList<const Interaction*> between(const QString& ndc, const QString& otherNdc) const;
    // The terms of the drug that the allergy code covers.
    QStringList allergyHits(const QString& code, const QString& ndc) const;
    // "Source: short name; short name".
    QString sourceNote(const Interaction& interaction) const;

    bool knows(const QString& ndc) const { return ingredientsOf_.contains(ndc); }
    qsizetype drugCount() const { return ingredientsOf_.size(); }
    qsizetype interactionCount() const { return interactions_.size(); }

private:
    bool has(const QString& ingredient, const QString& term) const;
    bool knownTerm(const QString& term) const;
    void readFile(const QMap<QString, QString>& files, const QString& name, int columns,
                  const std::function<void(const QStringList&, const QString&)>& row);
    void check();

    QHash<QString, QStringList> ingredientsOf_;
    QHash<QString, QStringList> classesOf_;
    QList<Interaction> interactions_;
    QHash<QString, QStringList> allergyCovers_;
    QHash<QString, Source> sources_;
    QStringList problems_;
};

}  // namespace tvrx
