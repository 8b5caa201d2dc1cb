#pragma once

#include "claims/ClaimExchange.h"
#include "claims/colRX.h"

#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
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

    // Records a request or a response in table Claims, stamped with the server's time.
    void AddClaimRecord(qint32 RxInfoID, bool Response, bool Reversal, bool OtherIns,
                        const QString& ClaimText, const QString& HeaderText);

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
    std::shared_ptr<tvrx::colRX> colRX_;
    QString printDevice_;
    QString errorMessage_;
};

}  // namespace tvrx
