#pragma once

#include "claims/ClaimExchange.h"
#include "claims/colRX.h"

#include <QString>

#include <functional>
#include <memory>

namespace tvrx {

class DbConnection;
class RecordSet;
class Frame;
namespace response {
class ResponseFile;
}
class TreeControl;
class clsClaimResponse;

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

    // Bills the prescriptions of colRX in one transmission: the payer chosen when the first
    // prescription has a second one, the header and a body per prescription (or the
    // reversal of the first), a Claims row per request, the exchange, and the answer read
    // back. rsPatIns and rsIns are the coverage row and its plan row (PlanRows.h opens
    // both). True when the answer came and was read; ErrorMessage then ends in a line
    // break, and otherwise says what went wrong.
    bool SubmitClaim(const QString& sTVIDirectory, RecordSet& rsPatIns, RecordSet& rsIns,
                     bool Reversal = false);

    // Records a request or a response in table Claims, stamped with the server's time.
    void AddClaimRecord(qint32 RxInfoID, bool Response, bool Reversal, bool OtherIns,
                        const QString& ClaimText, const QString& HeaderText);

    // Reads the payer's response file (bytes taken as characters), gives each prescription
    // of colRX its group to decode, and writes what the payer decided back on the
    // prescriptions. SendingOther: the claim went to the prescriptions' other payer. True
    // when at least one prescription was handled (for a reversal, when the first one was);
    // ErrorMessage says why not, and is not cleared when all goes well.
    bool ParseClaimFile(const QString& sClaimFile, bool SendingOther = false);
    // The version the last response file read gave: "32", "40", "51" ...
    QString FormCode() const { return formCode_; }
    // "PAID" until a transmission header said "R", then "REJECTED" for the rest of this
    // object's life.
    QString HeaderResponse() const;
    // Shows on the host's tree what each payer answered for each prescription: a root per
    // payer, the status, the amounts or the rejects, the messages and the DUR findings.
    // The screen's pointer is an hourglass meanwhile. (responses/ResultTree.cpp)
    void BuildTree(TreeControl& SSTree1);
    // Adds the DUR findings of CurrentResponse under the node "DURINFO" + sKey; with
    // UpdateDB, the prescription at position nCount takes the first finding's code as its
    // DURConflict.
    void ParseDUR(TreeControl& SSTree1, qint16& nCount, const QString& sKey,
                  clsClaimResponse& CurrentResponse, bool UpdateDB = false);

private:
    // Handles the response text of the prescription at a position; false stops the reader.
    using ClaimHandler = std::function<bool(int index, const QString& claim)>;
    // The claim steps: the count checked, then each group cut and handled in order.
    bool parseClaims(Frame& frame, const response::ResponseFile& file, const ClaimHandler& handle);
    bool parseReversal(Frame& frame, const response::ResponseFile& file, bool sendingOther);
    // Checks the count of claims against colRX; false, with ErrorMessage, when the reader
    // must stop.
    bool claimsMatch(const response::ResponseFile& file);
    bool handleFixedClaim(Frame& frame, int index, const QString& claim);
    bool handleClaim51(Frame& frame, int index, const QString& claim, bool sendingOther);
    void checkBelowCost(Frame& frame, const clsPrescription& rx, bool showBox);

    std::shared_ptr<tvrx::colRX> colRX_;
    QString printDevice_;
    QString errorMessage_;
    QString formCode_;
    // 0 until a transmission header said "R", then 1.
    qint32 headerResponse_ = 0;
};

}  // namespace tvrx
