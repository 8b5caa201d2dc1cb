#pragma once

#include "records/PlanLookup.h"
#include "session/runtime/ComponentFactory.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <deque>
#include <memory>
#include <optional>

namespace tvrx {

// A plan directory played by a script, for tests: every search, by any object the factory
// makes, takes the next answer queued (a plan, or none found; nothing queued finds
// nothing). The script keeps, for each object made, the searches it received and what the
// insurance lookup had written into its ProcessorNumber when it let the object go.
//
//     auto script = std::make_shared<PlanLookupScript>();
//     script->answer(PlanEntry{...});
//     mdlMain::PlanLookups.set(script->factory());
class PlanLookupScript : public std::enable_shared_from_this<PlanLookupScript> {
public:
    struct Made {
        // "Search(TEXT)" or "SearchBinAndProcessor(BIN, PROCESSOR)", in order.
        QStringList searches;
        // The ProcessorNumber when the object was released; empty while it lives.
        std::optional<QString> releasedProcessorNumber;
    };

    void answer(std::optional<PlanEntry> plan);
    // Answers queued but never asked for.
    int pendingAnswers() const { return static_cast<int>(answers_.size()); }
    // Every object made, the first first.
    const QList<Made>& made() const { return made_; }

    // A factory that makes one object per call, each answering from this script.
    ComponentFactory<PlanLookup>::Make factory();

private:
    friend class ScriptedPlanLookup;

    std::deque<std::optional<PlanEntry>> answers_;
    QList<Made> made_;
};

// One object of a PlanLookupScript.
class ScriptedPlanLookup : public PlanLookup {
public:
    ScriptedPlanLookup(std::shared_ptr<PlanLookupScript> script, qsizetype number);
    ~ScriptedPlanLookup() override;
    ScriptedPlanLookup(const ScriptedPlanLookup&) = delete;
    ScriptedPlanLookup& operator=(const ScriptedPlanLookup&) = delete;

    void Search(const QString& sText, bool& found) override;
    void SearchBinAndProcessor(const QString& sBIN, const QString& sProcessor,
                               bool& found) override;

private:
    void search(const QString& call, bool& found);

    std::shared_ptr<PlanLookupScript> script_;
    qsizetype number_;
};

}  // namespace tvrx
