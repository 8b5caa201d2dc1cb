#pragma once

#include "claims/ClaimExchange.h"
#include "claims/colRX.h"

#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
class RecordSet;

// The claim of one or more prescriptions: what the host fills, sends through the
// transmission program, and reads the payer's answer from.
class Wrapper {
public:
    // Holds one new prescription under no key, ready for the host to fill. The lookup
    // database is opened; if it is missing the user has been told, and the object works.
    Wrapper();
    ~Wrapper();
    Wrapper(const Wrapper&) = delete;
    Wrapper& operator=(const Wrapper&) = delete;

    // Whether the payer paid less than the last prescription cost; set by the response
    // reader.
    bool BelowCost = false;
    // Whether the last transmission was answered and its response accepted.
    bool ClaimDone = false;

    QString PrintDevice() const { return printDevice_; }
    // Also given to the prescriptions' collection, for the prescriptions it adds.
    void setPrintDevice(const QString& device);

    // The prescriptions of this claim; after being set to nothing, a new empty collection.
    std::shared_ptr<tvrx::colRX> colRX();
    void setcolRX(std::shared_ptr<tvrx::colRX> prescriptions);

    // What went wrong, for the host to show.
    QString ErrorMessage() const { return errorMessage_; }

    void setConnection(std::shared_ptr<DbConnection> connection);
    // The second data source for price tables. It is not opened here.
    void setAltConnection(std::shared_ptr<DbConnection> connection);
    // Reads price tables from the second data source; refused, with a box, until one is set.
    void setUseAltSource(bool useAlternate);

    // Sends the text through the exchange directory and waits, with the transmit form, for
    // the transmission program's response. When one came, reader gets its path while the
    // file is there, and the file is removed when reader returns. On abort the request is
    // withdrawn if the transmission program has not collected it. Returns whether a
    // response came.
    bool ExchangeClaimFile(const QString& sTVIDirectory, const QString& sClaimText,
                           const ResponseReader& reader = {});

    // The header of a claim for the prescriptions of colRX, from the plan row and the
    // coverage row (PlanRows.h opens both). The main plan's Form picks the layout; with
    // SendingOther the other insurance of the first prescription is billed. Empty when a
    // box stopped it; DebugMode silences the box of an other insurance not found.
    QString BuildHeader(RecordSet& rsPatIns, RecordSet& rsIns, bool SendingOther = false,
                        bool DebugMode = false);

    // Records a request or a response in table Claims, stamped with the server's time.
    void AddClaimRecord(qint32 RxInfoID, bool Response, bool Reversal, bool OtherIns,
                        const QString& ClaimText, const QString& HeaderText);

private:
    std::shared_ptr<tvrx::colRX> colRX_;
    QString printDevice_;
    QString errorMessage_;
};

}  // namespace tvrx
