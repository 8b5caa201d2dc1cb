#include "records/ScriptedPlanLookup.h"

namespace tvrx {

void PlanLookupScript::answer(std::optional<PlanEntry> plan) {
    answers_.push_back(std::move(plan));
}

ComponentFactory<PlanLookup>::Make PlanLookupScript::factory() {
    return [script = shared_from_this()]() -> std::shared_ptr<PlanLookup> {
        script->made_.append(Made());
        return std::make_unique<ScriptedPlanLookup>(script, script->made_.size() - 1);
    };
}

ScriptedPlanLookup::ScriptedPlanLookup(std::shared_ptr<PlanLookupScript> script, qsizetype number)
    : script_(std::move(script)), number_(number) {}

ScriptedPlanLookup::~ScriptedPlanLookup() {
    script_->made_[number_].releasedProcessorNumber = ProcessorNumber;
}

void ScriptedPlanLookup::Search(const QString& sText, bool& found) {
    search(QStringLiteral("Search(%1)").arg(sText), found);
}

void ScriptedPlanLookup::SearchBinAndProcessor(const QString& sBIN, const QString& sProcessor,
                                               bool& found) {
    search(QStringLiteral("SearchBinAndProcessor(%1, %2)").arg(sBIN, sProcessor), found);
}

void ScriptedPlanLookup::search(const QString& call, bool& found) {
    script_->made_[number_].searches.append(call);
    found = false;
    if (script_->answers_.empty()) return;
    const std::optional<PlanEntry> plan = script_->answers_.front();
    script_->answers_.pop_front();
    if (!plan) return;
    take(*plan);
    found = true;
}

}  // namespace tvrx
