#include "prescription/FillRow.h"

#include "prescription/clsPrescription.h"
#include "session/data/RecordSet.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

namespace tvrx::fillrow {

QVariant column(const RecordSet& rs, const char* name) {
    return rs.Fields(QString::fromLatin1(name));
}

QString text(const RecordSet& rs, const char* name) {
    const QVariant value = column(rs, name);
    return value.isNull() ? QString() : value.toString();
}

QVariant orZero(const RecordSet& rs, const char* name) {
    return mdlMain::ScreenForNull(column(rs, name), 0);
}

QVariant zeroText(const RecordSet& rs, const char* name) {
    return QStringLiteral("0") + text(rs, name);
}

QDateTime today() {
    return mdlMain::clock().now().date().startOfDay();
}

QVariantList newRefillValues(const RecordSet& last, const NewFill& fill) {
    const QVariant compound = column(last, "Compound");
    return {fill.number,
            fill.refill,
            orZero(last, "PatientID"),
            mdlMain::ScreenForNull(column(last, "Patient")),
            orZero(last, "PatInsID"),
            orZero(last, "MDID"),
            column(last, "Doctor"),
            column(last, "Drug"),
            orZero(last, "DrugID"),
            !compound.isNull() && conv::ToDouble(compound) != 0,
            fill.qty,
            fill.refills,
            fill.qtyRemain,
            orZero(last, "Cost"),
            orZero(last, "Price"),
            orZero(last, "Copay"),
            column(last, "SIG"),
            mdlMain::clock().now(),
            orZero(last, "LogID"),
            column(last, "DS"),
            fill.rphId,
            fill.techId,
            orZero(last, "PriceTableID"),
            column(last, "SigCodes"),
            column(last, "Schedule")};
}

void carryOver(Frame& frame, clsPrescription& rx, const RecordSet& last) {
    frame([&] { rx.Notes = text(last, "Notes"); });
    frame([&] { rx.FormulaID = conv::ToInteger(zeroText(last, "FormulaID")); });
    frame([&] { rx.DNDC = text(last, "DNDC"); });
    frame([&] { rx.InsData = text(last, "InsData"); });
    frame([&] { rx.OPatInsID = conv::ToLong(zeroText(last, "OPatInsID")); });
    rx.OInsPaid = 0;
    rx.OInsAmount = 0;
    rx.OInsCopay = 0;
    rx.PInsAmount = 0;
    rx.PInsCopay = 0;
    rx.OOnlineResult.clear();
    rx.OAuthCode.clear();
    frame([&] { rx.OtherCoverage = text(last, "OtherCoverage"); });
    frame([&] { rx.OtherType = text(last, "OtherType"); });
    frame([&] { rx.PaidQualifier = text(last, "PaidQualifier"); });
    rx.OtherDate = today();
    frame([&] { rx.MetricQty = conv::ToDouble(zeroText(last, "MetricQty")); });
}

}  // namespace tvrx::fillrow
