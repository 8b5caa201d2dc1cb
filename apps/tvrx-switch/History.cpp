#include "History.h"

#include "session/data/DbConnection.h"
#include "session/runtime/Failure.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace tvrx::sw {

namespace {

const QString kCreate = QStringLiteral(
    "CREATE TABLE IF NOT EXISTS Claims ("
    "ClaimID INTEGER PRIMARY KEY, Received TEXT, Bin TEXT, Pcn TEXT, PharmacyId TEXT, "
    "RxNumber TEXT, FillNumber TEXT, DateOfService TEXT, CardholderId TEXT, PersonCode INTEGER, "
    "Product TEXT, Quantity REAL, DaysSupply INTEGER, PrescriberId TEXT, Status TEXT, "
    "Rejects TEXT, Reference TEXT, IngredientCost INTEGER, DispensingFee INTEGER, "
    "SalesTax INTEGER, PatientPay INTEGER, TotalPaid INTEGER, Reversed INTEGER)");
const QString kColumns = QStringLiteral(
    "ClaimID, Bin, Pcn, PharmacyId, RxNumber, FillNumber, DateOfService, CardholderId, "
    "PersonCode, Product, Quantity, DaysSupply, PrescriberId, Status, Rejects, Reference, "
    "IngredientCost, DispensingFee, SalesTax, PatientPay, TotalPaid, Reversed");
// Paid and captured claims stand until they are reversed.
const QString kStanding = QStringLiteral("Status IN ('P', 'C') AND Reversed = 0");
// A reference is the day received and the claim's number in the history.
const QString kReferenceDay = QStringLiteral("yyMMdd");
constexpr int kReferenceDigits = 8;

// Creates an empty file that only its owner may read and write, unless it exists.
bool createPrivately(const QString& path) {
    if (QFileInfo::exists(path)) return true;
    QDir().mkpath(QFileInfo(path).absolutePath());
    const int fd = ::open(QFile::encodeName(path).constData(), O_CREAT | O_EXCL | O_WRONLY, 0600);
    if (fd < 0) return false;
    ::close(fd);
    return true;
}

HistoryClaim claimOf(const RecordSet& rs) {
    HistoryClaim claim;
    int column = 0;
    const auto next = [&] { return rs.Fields(column++); };
    claim.id = next().toLongLong();
    claim.key = {next().toString(), next().toString(), next().toString(),
                 next().toString(), next().toString(), next().toString()};
    claim.cardholderId = next().toString();
    claim.personCode = next().toInt();
    claim.product = next().toString();
    claim.quantity = next().toDouble();
    claim.daysSupply = next().toInt();
    claim.prescriberId = next().toString();
    const QString status = next().toString();
    claim.status = status.isEmpty() ? QChar() : status.front();
    const QString rejects = next().toString();
    claim.rejects = rejects.isEmpty() ? QStringList() : rejects.split(u',');
    claim.reference = next().toString();
    for (qint64* amount :
         {&claim.amounts.ingredientCost, &claim.amounts.dispensingFee, &claim.amounts.salesTax,
          &claim.amounts.patientPay, &claim.amounts.totalPaid}) {
        *amount = next().toLongLong();
    }
    claim.reversed = next().toInt() != 0;
    return claim;
}

QVariantList keyValues(const ClaimKey& key) {
    return {key.bin, key.pcn, key.pharmacyId, key.rxNumber, key.dateOfService};
}

const QString kSameKey =
    QStringLiteral("Bin = ? AND Pcn = ? AND PharmacyId = ? AND RxNumber = ? AND DateOfService = ?");

}  // namespace

History::History(std::unique_ptr<DbConnection> db) : db_(std::move(db)) {}
History::~History() = default;

std::unique_ptr<History> History::open(const QString& path, QString& problem) {
    if (!createPrivately(path)) {
        problem = QStringLiteral("cannot create the history %1").arg(path);
        return nullptr;
    }
    try {
        auto db = std::make_unique<DbConnection>(QStringLiteral("sqlite://") +
                                                 QFileInfo(path).absoluteFilePath());
        db->Open();
        db->Execute(kCreate);
        return std::unique_ptr<History>(new History(std::move(db)));
    } catch (const Failure& failure) {
        problem = QStringLiteral("cannot use the history %1: %2").arg(path, failure.description());
        return nullptr;
    }
}

QList<HistoryClaim> History::select(const QString& where, const QVariantList& values) const {
    QList<HistoryClaim> claims;
    RecordSet rs = db_->OpenRecordSet(QStringLiteral("SELECT %1 FROM Claims WHERE %2 ORDER BY "
                                                     "DateOfService DESC, ClaimID DESC")
                                          .arg(kColumns, where),
                                      values);
    for (; !rs.Eof(); rs.MoveNext()) claims.append(claimOf(rs));
    return claims;
}

std::optional<HistoryClaim> History::paid(const ClaimKey& key) const {
    QVariantList values = keyValues(key);
    values.append(key.fillNumber);
    const QList<HistoryClaim> found =
        select(kSameKey + QStringLiteral(" AND FillNumber = ? AND ") + kStanding, values);
    return found.isEmpty() ? std::nullopt : std::optional(found.first());
}

QList<HistoryClaim> History::memberClaims(const QString& bin, const QString& cardholderId,
                                          int personCode) const {
    return select(
        QStringLiteral("Bin = ? AND CardholderId = ? AND PersonCode = ? AND ") + kStanding,
        {bin, cardholderId, personCode});
}

std::optional<HistoryClaim> History::reversible(const ClaimKey& key) const {
    const QList<HistoryClaim> found =
        select(kSameKey + QStringLiteral(" AND ") + kStanding, keyValues(key));
    return found.isEmpty() ? std::nullopt : std::optional(found.first());
}

void History::record(HistoryClaim& claim, const QDate& received) {
    db_->Execute(
        QStringLiteral("INSERT INTO Claims (%1) VALUES (NULL, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                       "?, ?, ?, ?, ?, ?, ?, ?, ?, 0)")
            .arg(kColumns),
        {claim.key.bin,
         claim.key.pcn,
         claim.key.pharmacyId,
         claim.key.rxNumber,
         claim.key.fillNumber,
         claim.key.dateOfService,
         claim.cardholderId,
         claim.personCode,
         claim.product,
         claim.quantity,
         claim.daysSupply,
         claim.prescriberId,
         QString(claim.status),
         claim.rejects.join(u','),
         claim.reference,
         claim.amounts.ingredientCost,
         claim.amounts.dispensingFee,
         claim.amounts.salesTax,
         claim.amounts.patientPay,
         claim.amounts.totalPaid});
    RecordSet last = db_->OpenRecordSet(QStringLiteral("SELECT MAX(ClaimID) FROM Claims"));
    claim.id = last.Fields(0).toLongLong();
    if (!claim.reference.isEmpty()) return;
    claim.reference = received.toString(kReferenceDay) +
                      QStringLiteral("%1").arg(claim.id, kReferenceDigits, 10, QLatin1Char('0'));
    db_->Execute(QStringLiteral("UPDATE Claims SET Reference = ? WHERE ClaimID = ?"),
                 {claim.reference, claim.id});
}

void History::markReversed(qint64 id) {
    db_->Execute(QStringLiteral("UPDATE Claims SET Reversed = 1 WHERE ClaimID = ?"), {id});
}

}  // namespace tvrx::sw
