#pragma once

#include <QString>

namespace tvrx {

class RecordSet;

// The plan directory: published plans with their BIN, processor control number, names,
// benefit manager, claim version and limits, kept in table PlanDirectory of the lookup
// database (built from db/reference/plan_directory.tsv). A search that finds a plan
// fills the read members with it; one that finds none leaves them as they were.
//
// Insurance lookups make one object per call.
class PlanLookup {
public:
    // Most prescriptions in one transmission.
    qint16 MaxScripts() const { return maxScripts_; }
    // The plan's payer sheet.
    QString RefSheet() const { return refSheet_; }
    QString States() const { return states_; }
    QString Status() const { return status_; }
    QString ShortName() const { return shortName_; }
    QString BIN() const { return bin_; }
    QString PBM() const { return pbm_; }
    // The claim version the plan takes, such as "51".
    QString Version() const { return version_; }
    QString Carrier() const { return carrier_; }
    QString PlanName() const { return planName_; }

    // The processor control number of the plan found; the caller may shorten it.
    QString ProcessorNumber;

    // Searches by part of the plan name, or with a leading "#" by part of the BIN,
    // ignoring letter case, and lets the user pick one of the plans found. A text that is
    // blank after the "#" finds nothing.
    void Search(const QString& sText, bool& found);
    // Looks up the one plan with this BIN and processor control number (letter case and
    // trailing blanks do not matter).
    void SearchBinAndProcessor(const QString& sBIN, const QString& sProcessor, bool& found);

private:
    // Fills the read members from the current row of a directory query.
    void take(const RecordSet& rs);

    qint16 maxScripts_ = 0;
    QString refSheet_;
    QString states_;
    QString status_;
    QString shortName_;
    QString bin_;
    QString pbm_;
    QString version_;
    QString carrier_;
    QString planName_;
};

}  // namespace tvrx
