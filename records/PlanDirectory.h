#pragma once

#include "records/PlanLookup.h"

namespace tvrx {

// The plan directory the library ships: published plans with their BIN, processor
// control number, names, benefit manager, claim version and limits, kept in table
// PlanDirectory of the lookup database (built from db/reference/plan_directory.tsv).
// Searches ignore letter case; a name or BIN search shows the plans found in the
// user-interaction service's pick list.
class PlanDirectory : public PlanLookup {
public:
    // A text that is blank after the "#" finds nothing.
    void Search(const QString& sText, bool& found) override;
    // Letter case and trailing blanks do not matter.
    void SearchBinAndProcessor(const QString& sBIN, const QString& sProcessor,
                               bool& found) override;
};

}  // namespace tvrx
