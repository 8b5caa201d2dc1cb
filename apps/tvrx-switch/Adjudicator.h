#pragma once

#include "History.h"
#include "Outcome.h"
#include "Payers.h"
#include "Request.h"

#include <QDate>
#include <QHash>
#include <QString>

#include <functional>

namespace tvrx::sw {

// Decides each claim of a transmission as the plan of its BIN and PCN says
// (docs/SIMULATOR.md): the transmission's header, the member, the claim's own values
// ("M/I" rejects for what is missing or malformed), a resubmission, the plan's rules in
// their order, then the pricing. Every claim and every reversal is kept in the history.
class Adjudicator {
public:
    // describe gives a reject code's description from the reject table.
    Adjudicator(Payers payers, History& history, std::function<QString(const QString&)> describe);

    Answer adjudicate(const Transmission& transmission, const QDate& received);
    const Payers& payers() const { return payers_; }

private:
    struct Context;

    Outcome claim(const Context& context, const Claim& claim, const QDate& received);
    Outcome reversal(const Context& context, const Claim& claim);
    // The first reject of the transmission as a whole, if any.
    std::optional<Outcome> headerReject(Context& context) const;
    std::optional<Outcome> claimReject(const Context& context, const Claim& claim) const;
    std::optional<Outcome> ruleOutcome(const Context& context, const Claim& claim,
                                       const QList<HistoryClaim>& memberClaims,
                                       QList<DurFinding>& findings) const;
    Outcome priced(const Context& context, const Claim& claim) const;
    Outcome rejected(const QString& code, const QString& detail = {}) const;

    Payers payers_;
    History& history_;
    std::function<QString(const QString&)> describe_;
};

}  // namespace tvrx::sw
