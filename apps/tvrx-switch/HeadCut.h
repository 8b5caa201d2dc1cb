#pragma once

#include "claims/ClaimLayout.h"

#include <QStringList>
#include <QStringView>

#include <optional>
#include <span>

namespace tvrx::sw {

// Cuts a fixed head into its items as it was sent. The claim builders write a head by its
// items' widths, but a picture never cuts a number ("00" with 100 gives "100") and some
// items have no width at all (a relationship code is written as it stands), so a head can be
// longer or shorter than the widths add up to. The cut follows the layout's items: a
// constant stands as it is, a filled text and a date keep their widths (a date is eight
// digits of a real day, or zeros), a number takes its width or more (and then has no
// leading zero, as a picture adds none), and a text without width any length. Of the cuts
// that fit, the one with the fewest items off their nominal width wins, and among those
// the one whose first such item comes earliest; nothing when none fits.
std::optional<QStringList> cutHead(std::span<const claims::Field> items, QStringView head);

}  // namespace tvrx::sw
