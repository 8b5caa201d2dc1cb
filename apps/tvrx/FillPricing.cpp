#include "FillPricing.h"

#include "RecordSession.h"
#include "common/CommandLine.h"

#include "claims/Wrapper.h"
#include "prescription/clsPrescription.h"
#include "records/clsPatient.h"
#include "session/data/DbConnection.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

const QString kGenericTable = QStringLiteral("generic-table");
const QString kBrandTable = QStringLiteral("brand-table");
const QString kAltDb = QStringLiteral("alt-db");

// The pharmacy's cash table, 20 when the option is empty, 0 without an Options row.
qint32 cashTable(DbConnection& db) {
    const QVariant cash = db.Scalar(QStringLiteral("SELECT COALESCE(DefaultCA, 20) FROM Options"));
    return cash.isNull() ? 0 : cash.toInt();
}

qint32 tableOption(const CommandLine& line, const QString& name, qint32 fallback) {
    return line.isSet(name) ? line.value(name).toInt() : fallback;
}

QString money(double amount) {
    return conv::Format(amount, QStringLiteral("0.00"));
}

}  // namespace

void declarePricingOptions(CommandLine& line) {
    line.addOption(kGenericTable, QStringLiteral("N"),
                   QStringLiteral("the default table of generic drugs; else the cash table"));
    line.addOption(kBrandTable, QStringLiteral("N"),
                   QStringLiteral("the default table of brand drugs; else the cash table"));
    line.addOption(kAltDb, QStringLiteral("URL"),
                   QStringLiteral("price from the alternate price source at URL"));
}

bool useAlternateSource(const CommandLine& line) {
    if (!line.isSet(kAltDb)) return true;
    auto source = std::make_shared<DbConnection>();
    try {
        source->setConnectionString(line.value(kAltDb));
        source->Open();
    } catch (const Failure& failure) {
        line.failed(
            QStringLiteral("cannot open the price source %1: %2")
                .arg(shownDatabase(line.value(kAltDb)), failure.description().simplified()));
        return false;
    }
    Wrapper wrapper;
    wrapper.setAltConnection(source);
    wrapper.setUseAltSource(true);
    return true;
}

void choosePriceTables(const CommandLine& line, DbConnection& db, clsPrescription& rx) {
    rx.PatientPT = rx.PatientClass()->PriceTableID;
    const qint32 cash = cashTable(db);
    rx.SetPriceTables(tableOption(line, kGenericTable, cash), tableOption(line, kBrandTable, cash));
}

void priceAndSave(const CommandLine& line, DbConnection& db, clsPrescription& rx) {
    choosePriceTables(line, db, rx);
    rx.RetailPrice = rx.GetRetail(rx.AWP, rx.Cost, rx.Qty);
    rx.Price = rx.RetailPrice;
    rx.Copay = rx.GetCopay(rx.AWP, rx.Cost, rx.Qty);
    if (rx.PriceTableID < 1) rx.PriceTableID = rx.CurrentPT;
    rx.Update();
}

void printFill(clsPrescription& rx) {
    std::printf("Fill %d: prescription %d, refill %d\n", rx.RXInfoID, rx.Number, rx.RefillNumber);
    std::printf("  %s for %s, by %s\n", qPrintable(rx.Drug), qPrintable(rx.Patient),
                qPrintable(rx.Doctor));
    std::printf("  quantity %s, remaining %s, refills left %s, days supply %s\n",
                qPrintable(conv::NumberText(rx.Qty)), qPrintable(conv::NumberText(rx.QtyRemain)),
                qPrintable(rx.RefillsLeft()), qPrintable(rx.DS()));
    std::printf("  price %s, copay %s, tables %d (retail) and %d (copay)\n",
                qPrintable(money(rx.Price)), qPrintable(money(rx.Copay)), rx.CurrentPT, rx.CopayPT);
}

JsonObjectText fillJson(clsPrescription& rx) {
    JsonObjectText fill;
    fill.add(QStringLiteral("RXInfoID"), rx.RXInfoID);
    fill.add(QStringLiteral("Number"), rx.Number);
    fill.add(QStringLiteral("RefillNumber"), rx.RefillNumber);
    fill.add(QStringLiteral("Drug"), rx.Drug);
    fill.add(QStringLiteral("Patient"), rx.Patient);
    fill.add(QStringLiteral("Qty"), rx.Qty);
    fill.add(QStringLiteral("QtyRemain"), rx.QtyRemain);
    fill.add(QStringLiteral("Refills"), rx.Refills);
    fill.add(QStringLiteral("RefillsLeft"), rx.RefillsLeft());
    fill.add(QStringLiteral("Price"), double(rx.Price));
    fill.add(QStringLiteral("Copay"), double(rx.Copay));
    fill.add(QStringLiteral("CurrentPT"), rx.CurrentPT);
    fill.add(QStringLiteral("CopayPT"), rx.CopayPT);
    return fill;
}

}  // namespace tvrx::cli
