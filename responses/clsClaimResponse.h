#pragma once

#include "responses/DUR.h"
#include "responses/Reject.h"
#include "responses/ResponseValues.h"

#include <QString>
#include <QStringView>

#include <memory>

namespace tvrx {

class Frame;
class RejectTable;

namespace response {
class FieldReader;
struct PaidField;
struct Span;
}  // namespace response

// One payer's answer to one claim or one reversal. Claim receives the response text (for
// a claim, the group of the response file behind the six characters the file reader puts
// in front of it; for a reversal, the whole file), and BuildResponse decodes it into a
// status, amounts, messages, rejects with their descriptions and DUR findings.
class clsClaimResponse {
public:
    // Position 6 of the response text is "R": the payer rejected the whole transmission.
    bool HeaderRejected = false;
    // The text was the answer to a reversal.
    bool Reversal = false;

    // The rejects of the last decoding; a get with none makes an empty list.
    std::shared_ptr<tvrx::colReject> colReject() const;
    void setcolReject(std::shared_ptr<tvrx::colReject> value);
    // The DUR findings; a get with none makes an empty list.
    std::shared_ptr<tvrx::colDUR> colDUR() const;
    void setcolDUR(std::shared_ptr<tvrx::colDUR> value);

    // Decodes Claim. False only when the lookup database or its reject codes are missing,
    // or Claim is blank or does not open with a start byte, each after a box; a fault in
    // the middle is reported and the decoding carries on.
    bool BuildResponse();

    // "PAID", "DUPLICATE", "CAPTURED", "REJECTED" or "SUCCESS"; empty until decoded and
    // for a status the layouts do not know.
    const QString& PaidStatus() const { return values_.PaidStatus; }
    QString Claim;
    // False for a duplicate told by reject 83 and for a rejected reversal: the file reader
    // then keeps the response text it stored before.
    bool SaveClaim() const { return values_.SaveClaim; }
    double Total() const { return values_.Total; }
    double Copay() const { return values_.Copay; }
    double Coinsurance() const { return values_.Coinsurance; }
    const QString& Reference() const { return values_.Reference; }
    qint16 PAID() const { return values_.PAID; }
    double Cost() const { return values_.Cost; }
    double Fee() const { return values_.Fee; }
    double PercetSalesTaxSub() const { return values_.PercetSalesTaxSub; }
    double SalesTax() const { return values_.SalesTax; }
    double TotalPaid() const { return values_.TotalPaid; }
    const QString& Message() const { return values_.Message; }
    const QString& MessageTwo() const { return values_.MessageTwo; }
    const QString& DURExtra() const { return values_.DURExtra; }
    const QString& PlanID() const { return values_.PlanID; }
    double IncentiveFee() const { return values_.IncentiveFee; }

    // Everything decoded, the values no property reads included, for reports and checks.
    const ResponseValues& decoded() const { return values_; }

private:
    bool startDecoding(Frame& frame);
    void decodeFixedClaim(Frame& frame, QStringView version);
    void decodeFixedPaid(Frame& frame, bool version40, QStringView status);
    void decodeFixedCaptured(Frame& frame, bool version40);
    void decodeFixedRejected(Frame& frame, bool version40);
    void decodeFixedReversal(Frame& frame);
    void decode51Claim(Frame& frame);
    void decode51Reversal(Frame& frame);
    void appendPhone(Frame& frame, const response::FieldReader& fields);
    QStringView status51(const response::FieldReader& fields) const;
    response::FieldReader durSegments51(const response::FieldReader& fields) const;
    static QStringView durSegment51(const response::FieldReader& segments);
    void readPaidField51(const response::FieldReader& fields, const response::PaidField& field);
    // Looks up and lists the rejects; true when one of them is the duplicate reject.
    bool readFixedRejects(Frame& frame, response::Span count, qsizetype codesFrom,
                          bool cutDescriptions);
    bool read51Rejects(Frame& frame, const response::FieldReader& fields);
    void addReject(Frame& frame, const QString& code, bool cutDescription);
    QString describeReject(const QString& code, bool cutDescription) const;
    void setRejected(bool duplicate);

    void ParseDUR(QStringView sDUR);
    void Parse51DUR(QStringView sDUR);

    ResponseValues values_;
    mutable std::shared_ptr<tvrx::colReject> colReject_;
    mutable std::shared_ptr<tvrx::colDUR> colDUR_;
    // The reject codes, held while a decoding runs.
    std::shared_ptr<const RejectTable> rejectTable_;
};

}  // namespace tvrx
