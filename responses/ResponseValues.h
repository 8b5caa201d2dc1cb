#pragma once

#include <QString>
#include <QtGlobal>

namespace tvrx {

// What decoding a response sets: the values its read-only properties show, and the values
// that are decoded but that no property reads. A decoding sets only what its layout
// holds, so an object decoded twice keeps the earlier values the later text does not set.
struct ResponseValues {
    QString PaidStatus;
    bool SaveClaim = true;
    double Total = 0;
    double Copay = 0;
    double Coinsurance = 0;
    QString Reference;
    qint16 PAID = 0;
    double Cost = 0;
    double Fee = 0;
    double PercetSalesTaxSub = 0;
    double SalesTax = 0;
    double TotalPaid = 0;
    QString Message;
    QString MessageTwo;
    QString DURExtra;
    QString PlanID;
    double IncentiveFee = 0;

    QString PrescriptionRefNumber;
    double PreferredProductCount = 0;
    double PreferredProductID = 0;
    QString TaxExemptIndicator;
    QString BasisOfReimbursement;
    double OtherAmountCount = 0;
    QString OtherAmountQualifier;
    double OtherAmountPaid = 0;
    qint32 RejectCount = 0;
};

}  // namespace tvrx
