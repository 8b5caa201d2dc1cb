#include "prescription/ClinicalKnowledge.h"

#include "session/data/EmbeddedFiles.h"
#include "session/data/TabSeparated.h"

#include <QRegularExpression>
#include <QSet>

namespace tvrx {

namespace {

const QString kDrugs = QStringLiteral("clinical_drugs.tsv");
const QString kIngredients = QStringLiteral("clinical_ingredients.tsv");
const QString kInteractions = QStringLiteral("clinical_interactions.tsv");
const QString kAllergies = QStringLiteral("clinical_allergies.tsv");
const QString kSources = QStringLiteral("clinical_sources.tsv");

const QStringList kSeverities{QStringLiteral("MAJOR"), QStringLiteral("MODERATE"),
                              QStringLiteral("MINOR")};

// A list cell: items separated by ";", blanks around them dropped, empty items too.
QStringList listOf(const QString& cell) {
    QStringList items;
    for (const QString& item : cell.split(u';')) {
        if (!item.trimmed().isEmpty()) items.append(item.trimmed());
    }
    return items;
}

// Two terms in either order name the same pair.
QString pairKey(const QString& first, const QString& second) {
    return first < second ? first + u'|' + second : second + u'|' + first;
}

}  // namespace

QMap<QString, QString> ClinicalKnowledge::builtInFiles() {
    QMap<QString, QString> files;
    for (const EmbeddedFile& file : clinicalReferenceFiles()) {
        files.insert(QString::fromUtf8(file.name.data(), qsizetype(file.name.size())),
                     QString::fromUtf8(file.text.data(), qsizetype(file.text.size())));
    }
    return files;
}

const ClinicalKnowledge& ClinicalKnowledge::demonstration() {
    static const ClinicalKnowledge knowledge = read(builtInFiles());
    return knowledge;
}

ClinicalKnowledge ClinicalKnowledge::read(const QMap<QString, QString>& files) {
    ClinicalKnowledge k;
    k.readFile(files, kIngredients, 2, [&k](const QStringList& cells, const QString& where) {
        if (k.classesOf_.contains(cells[0]))
            k.problems_.append(where + ": ingredient listed twice");
        k.classesOf_.insert(cells[0], listOf(cells[1]));
    });
    k.readFile(files, kDrugs, 3, [&k](const QStringList& cells, const QString& where) {
        static const QRegularExpression elevenDigits(QStringLiteral("^\\d{11}$"));
        if (!elevenDigits.match(cells[0]).hasMatch()) {
            k.problems_.append(where + ": the NDC is not 11 digits");
        }
        if (k.ingredientsOf_.contains(cells[0])) k.problems_.append(where + ": NDC listed twice");
        const QStringList ingredients = listOf(cells[2]);
        if (ingredients.isEmpty()) k.problems_.append(where + ": no ingredient");
        for (const QString& ingredient : ingredients) {
            if (!k.classesOf_.contains(ingredient)) {
                k.problems_.append(where + ": unknown ingredient " + ingredient);
            }
        }
        k.ingredientsOf_.insert(cells[0], ingredients);
    });
    k.readFile(files, kSources, 3, [&k](const QStringList& cells, const QString& where) {
        if (cells[1].trimmed().isEmpty() || cells[2].trimmed().isEmpty()) {
            k.problems_.append(where + ": a source without its name or citation");
        }
        k.sources_.insert(cells[0], {cells[1], cells[2]});
    });
    k.readFile(files, kInteractions, 10, [&k](const QStringList& cells, const QString& where) {
        Interaction pair{cells[0], cells[1], cells[2], cells[3], cells[4],
                         cells[5], cells[6], cells[7], cells[8], listOf(cells[9])};
        for (qsizetype text = 3; text <= 8; ++text) {
            if (cells[text].trimmed().isEmpty()) k.problems_.append(where + ": a text is missing");
        }
        if (!kSeverities.contains(pair.severity)) {
            k.problems_.append(where + ": severity " + pair.severity + " is not one of " +
                               kSeverities.join(QStringLiteral(", ")));
        }
        k.interactions_.append(pair);
    });
    k.readFile(files, kAllergies, 3, [&k](const QStringList& cells, const QString& where) {
        if (k.allergyCovers_.contains(cells[0])) k.problems_.append(where + ": code listed twice");
        k.allergyCovers_.insert(cells[0], listOf(cells[2]));
    });
    k.check();
    return k;
}

void ClinicalKnowledge::readFile(
    const QMap<QString, QString>& files, const QString& name, int columns,
    const std::function<void(const QStringList&, const QString&)>& row) {
    if (!files.contains(name)) {
        problems_.append(name + ": missing");
        return;
    }
    const TabSeparated table = parseTabSeparated(files.value(name));
    if (!table.error.isEmpty()) {
        problems_.append(name + ": " + table.error);
        return;
    }
    if (table.columns.size() != columns) {
        problems_.append(
            name + QStringLiteral(": %1 columns, not %2").arg(table.columns.size()).arg(columns));
        return;
    }
    for (std::size_t line = 0; line < table.rows.size(); ++line) {
        QStringList cells = table.rows[line];
        cells.resize(columns);
        row(cells, name + u':' + QString::number(line + 2));
    }
}

// The cross references: every pair's and allergy's terms known, every source listed,
// no pair twice, no term paired with itself.
void ClinicalKnowledge::check() {
    QSet<QString> pairs;
    for (const Interaction& pair : interactions_) {
        const QString where =
            kInteractions + u' ' + pair.first + QStringLiteral(" / ") + pair.second;
        for (const QString& term : {pair.first, pair.second}) {
            if (!knownTerm(term)) problems_.append(where + ": unknown term " + term);
        }
        if (pair.first == pair.second) problems_.append(where + ": a term paired with itself");
        if (pairs.contains(pairKey(pair.first, pair.second))) {
            problems_.append(where + ": pair listed twice");
        }
        pairs.insert(pairKey(pair.first, pair.second));
        if (pair.sources.isEmpty()) problems_.append(where + ": no source");
        for (const QString& source : pair.sources) {
            if (!sources_.contains(source)) problems_.append(where + ": unknown source " + source);
        }
    }
    for (auto allergy = allergyCovers_.cbegin(); allergy != allergyCovers_.cend(); ++allergy) {
        for (const QString& term : allergy.value()) {
            if (!knownTerm(term)) {
                problems_.append(kAllergies + u' ' + allergy.key() + ": unknown term " + term);
            }
        }
    }
}

bool ClinicalKnowledge::knownTerm(const QString& term) const {
    if (classesOf_.contains(term)) return true;
    for (const QStringList& classes : classesOf_) {
        if (classes.contains(term)) return true;
    }
    return false;
}

bool ClinicalKnowledge::has(const QString& ingredient, const QString& term) const {
    return ingredient == term || classesOf_.value(ingredient).contains(term);
}

QList<const ClinicalKnowledge::Interaction*> ClinicalKnowledge::between(
    const QString& ndc, const QString& otherNdc) const {
    QList<const Interaction*> found;
    if (ndc == otherNdc || !ingredientsOf_.contains(ndc) || !ingredientsOf_.contains(otherNdc)) {
        return found;
    }
    const QStringList& mine = ingredientsOf_[ndc];
    const QStringList& theirs = ingredientsOf_[otherNdc];
    for (const Interaction& pair : interactions_) {
        bool matched = false;
        for (const QString& a : mine) {
            for (const QString& b : theirs) {
                if (a == b) continue;
                matched = matched || (has(a, pair.first) && has(b, pair.second)) ||
                          (has(a, pair.second) && has(b, pair.first));
            }
        }
        if (matched) found.append(&pair);
    }
    return found;
}

QStringList ClinicalKnowledge::allergyHits(const QString& code, const QString& ndc) const {
    QStringList hits;
    for (const QString& ingredient : ingredientsOf_.value(ndc)) {
        for (const QString& term : allergyCovers_.value(code.trimmed().toUpper())) {
            if (has(ingredient, term) && !hits.contains(term)) hits.append(term);
        }
    }
    return hits;
}

QString ClinicalKnowledge::sourceNote(const Interaction& interaction) const {
    QStringList names;
    for (const QString& key : interaction.sources) names.append(sources_.value(key).shortName);
    return QStringLiteral("Source: ") + names.join(QStringLiteral("; "));
}

}  // namespace tvrx
