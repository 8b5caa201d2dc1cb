#pragma once

#include "Payers.h"
#include "Switch.h"

#include <QByteArray>
#include <QString>

#include <functional>

// The payers' answer to an eligibility request (docs/ELIGIBILITY.md, "The simulator's
// answers"): which of their plans cover the member on the day asked about, listed in the
// message in the form the pharmacy's report splits, or a rejection with its codes.
namespace tvrx::sw {

// Whether the request is an eligibility request: it opens with byte 2 and carries "E1" as
// its transaction code behind the BIN and the version.
bool isEligibilityRequest(const QByteArray& request);

// The response file and the line for the log.
Switch::Reply answerEligibility(const QByteArray& request, const Payers& payers);

}  // namespace tvrx::sw
