#pragma once

#include "claims/ClaimLayout.h"

#include <QString>

#include <span>

// The claim layouts, chosen by a plan's Form as exact text.
namespace tvrx::claims {

// The transaction header: "3B", "40", "32", "51", and any other Form ("3C" among them).
const Layout& headerLayout(const QString& form);
// The body of a claim: "3B", "40", "3C", "32", "51", and any other Form.
const Layout& claimLayout(const QString& form);
// A reversal, header and body in one: "3C", "51", and any other Form.
const Layout& reversalLayout(const QString& form);

// An eligibility request, head and segments in one.
const Layout& eligibilityLayout();

// The segmented 5.1 body, also among claimLayouts().
const Layout& segmentedClaimLayout();

// Every layout of each kind, for reading texts back and for listing them; the default
// layout, named "other", is the last of each list.
std::span<const Layout* const> headerLayouts();
std::span<const Layout* const> claimLayouts();
std::span<const Layout* const> reversalLayouts();

}  // namespace tvrx::claims
