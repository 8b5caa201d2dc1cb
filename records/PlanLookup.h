#pragma once

#include <QString>

#include <memory>

namespace tvrx {

// What a plan directory tells of one plan.
struct PlanEntry {
    // Most prescriptions in one transmission.
    qint16 MaxScripts = 0;
    // The plan's payer sheet.
    QString RefSheet;
    QString States;
    QString Status;
    QString ShortName;
    QString BIN;
    QString ProcessorNumber;
    QString PBM;
    // The claim version the plan takes, such as "51".
    QString Version;
    QString Carrier;
    QString PlanName;
};

// A plan directory: a search by name or BIN that lets the user pick a plan, or a look-up
// by BIN and processor control number. After a search that found a plan, the read
// members describe it; a search that finds none leaves them as they were.
//
// The insurance lookups make one object per call, through the session's factory
// (mdlMain::PlanLookups); a host gives the library a directory of its own by setting it.
// The library ships PlanDirectory, and ScriptedPlanLookup for tests.
class PlanLookup {
public:
    virtual ~PlanLookup() = default;

    qint16 MaxScripts() const { return plan_.MaxScripts; }
    QString RefSheet() const { return plan_.RefSheet; }
    QString States() const { return plan_.States; }
    QString Status() const { return plan_.Status; }
    QString ShortName() const { return plan_.ShortName; }
    QString BIN() const { return plan_.BIN; }
    QString PBM() const { return plan_.PBM; }
    QString Version() const { return plan_.Version; }
    QString Carrier() const { return plan_.Carrier; }
    QString PlanName() const { return plan_.PlanName; }

    // The processor control number of the plan found; the caller may shorten it.
    QString ProcessorNumber;

    // Searches by part of the plan name, or with a leading "#" by part of the BIN, and
    // lets the user pick one of the plans found.
    virtual void Search(const QString& sText, bool& found) = 0;
    // Looks up the one plan with this BIN and processor control number.
    virtual void SearchBinAndProcessor(const QString& sBIN, const QString& sProcessor,
                                       bool& found) = 0;

protected:
    // Makes the plan found the one the read members describe.
    void take(const PlanEntry& plan) {
        plan_ = plan;
        ProcessorNumber = plan.ProcessorNumber;
    }

private:
    PlanEntry plan_;
};

// A new plan directory from the session's factory: the host's, or else PlanDirectory.
// Fails with 91 when the host's factory gives none.
std::shared_ptr<PlanLookup> newPlanLookup();

}  // namespace tvrx
