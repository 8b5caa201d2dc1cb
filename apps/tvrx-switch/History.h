#pragma once

#include "Outcome.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tvrx {
class DbConnection;
}

namespace tvrx::sw {

// What identifies a prescription's claim at a pharmacy, as the payer keeps it.
struct ClaimKey {
    QString bin;
    QString pcn;
    QString pharmacyId;
    QString rxNumber;  // as a number, without leading zeros
    QString fillNumber;
    QString dateOfService;  // YYYYMMDD
};

// One adjudicated claim.
struct HistoryClaim {
    qint64 id = 0;
    ClaimKey key;
    QString cardholderId;
    int personCode = 0;
    QString product;
    double quantity = 0;
    int daysSupply = 0;
    QString prescriberId;
    QChar status;  // P, D, C or R
    QStringList rejects;
    QString reference;
    Amounts amounts;
    bool reversed = false;
};

// Every claim the simulator adjudicated, with its outcome, in an SQLite file, so that a
// refill too soon, an interaction, a resubmission and a reversal are judged against what
// was paid before, also across restarts. The file holds names and card numbers: it is
// created readable and writable by its owner only.
class History {
public:
    // Opens the file, creating it (mode 0600) and its table if need be; nothing, with the
    // problem, when it cannot be used.
    static std::unique_ptr<History> open(const QString& path, QString& problem);
    ~History();
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    // The paid (or captured) claim of this key, if one was paid and not reversed.
    std::optional<HistoryClaim> paid(const ClaimKey& key) const;
    // The member's paid claims not reversed, newest first.
    QList<HistoryClaim> memberClaims(const QString& bin, const QString& cardholderId,
                                     int personCode) const;
    // The most recent paid claim not reversed with the key's plan, pharmacy, prescription
    // and date of service, whatever its fill and product.
    std::optional<HistoryClaim> reversible(const ClaimKey& key) const;

    // Keeps the claim; its id is set, and its reference too when it has none.
    void record(HistoryClaim& claim, const QDate& received);
    void markReversed(qint64 id);

private:
    explicit History(std::unique_ptr<DbConnection> db);
    QList<HistoryClaim> select(const QString& where, const QVariantList& values) const;

    std::unique_ptr<DbConnection> db_;
};

}  // namespace tvrx::sw
