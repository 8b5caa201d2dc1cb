#include "Command.h"
#include "FillPricing.h"
#include "JsonOutput.h"
#include "RecordSession.h"

#include "prescription/PriceTable.h"
#include "prescription/clsPrescription.h"
#include "responses/ResponseJson.h"
#include "session/data/DbConnection.h"
#include "session/text/Conversions.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

const QString kTable = QStringLiteral("table");

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-ID"), QStringLiteral("the fill's RXInfoID"));
    line.addOption(kTable, QStringLiteral("N"),
                   QStringLiteral("the table of the custom price; else the fill's own"));
    declarePricingOptions(line);
    line.addDatabaseOption();
    line.addJsonOption();
}

// What pricing made of the fill.
struct Prices {
    double retail = 0;
    mdlMain::PriceBand band;
    double copay = 0;
    qint32 customTable = 0;
    double custom = 0;
};

// The retail price is asked of the price tables as GetRetail asks them, so that the band
// it came from can be shown.
Prices priced(const CommandLine& line, clsPrescription& rx) {
    Prices prices;
    double addend = 0;
    prices.retail = mdlMain::GetPrice(rx.CurrentPT, rx.AWP, rx.Cost, addend, rx.PriceTableID,
                                      rx.Qty, &prices.band);
    prices.copay = rx.GetCopay(rx.AWP, rx.Cost, rx.Qty);
    prices.customTable = line.isSet(kTable) ? line.value(kTable).toInt() : rx.PriceTableID;
    prices.custom = rx.GetCustomPrice(rx.AWP, rx.Cost, prices.customTable, rx.Qty);
    return prices;
}

QString number(double value) {
    return conv::NumberText(value);
}

void printText(const clsPrescription& rx, const Prices& prices) {
    std::printf("Fill %d: prescription %d, refill %d, quantity %s, AWP %s, cost %s\n", rx.RXInfoID,
                rx.Number, rx.RefillNumber, qPrintable(number(rx.Qty)), qPrintable(number(rx.AWP)),
                qPrintable(number(rx.Cost)));
    std::printf("Tables: retail %d, copay %d, drug %d, patient %d, %s\n", rx.CurrentPT, rx.CopayPT,
                rx.DrugPT, rx.PatientPT, rx.Generic ? "generic" : "brand");
    const mdlMain::PriceBand& band = prices.band;
    std::printf("Retail: %s, band from %s to below %s%s: %s x base + %s\n",
                qPrintable(number(prices.retail)), qPrintable(number(band.from)),
                qPrintable(number(band.breakPoint)), band.last ? " (the last band)" : "",
                qPrintable(number(band.multiplier)), qPrintable(number(band.addend)));
    std::printf("Copay: %s\n", qPrintable(number(prices.copay)));
    std::printf("Custom: %s by table %d\n", qPrintable(number(prices.custom)), prices.customTable);
}

void printJson(const clsPrescription& rx, const Prices& prices, const QList<ErrorReport>& reports) {
    JsonObjectText object;
    object.add(QStringLiteral("RXInfoID"), rx.RXInfoID);
    object.add(QStringLiteral("CurrentPT"), rx.CurrentPT);
    object.add(QStringLiteral("CopayPT"), rx.CopayPT);
    object.add(QStringLiteral("DrugPT"), rx.DrugPT);
    object.add(QStringLiteral("PatientPT"), rx.PatientPT);
    object.add(QStringLiteral("Generic"), rx.Generic);
    object.add(QStringLiteral("retail"), prices.retail);
    JsonObjectText band;
    band.add(QStringLiteral("from"), prices.band.from);
    band.add(QStringLiteral("BreakPoint"), prices.band.breakPoint);
    band.add(QStringLiteral("MarkUpMultiplier"), prices.band.multiplier);
    band.add(QStringLiteral("MarkUpAddend"), prices.band.addend);
    band.add(QStringLiteral("last"), prices.band.last);
    object.add(QStringLiteral("band"), band);
    object.add(QStringLiteral("copay"), prices.copay);
    object.add(QStringLiteral("customTable"), prices.customTable);
    object.add(QStringLiteral("custom"), prices.custom);
    object.add(QStringLiteral("reports"), reportsJson(reports));
    cli::printJson(object);
}

int run(const CommandLine& line) {
    const std::optional<qint32> id = line.key(0);
    if (!id) return line.usageError(notAKey(line.arguments().at(0)));
    RecordSession session(line);
    const auto db = session.open();
    if (!db || !useAlternateSource(line)) return kExitFailed;
    if (db->Scalar(QStringLiteral("SELECT COUNT(*) FROM RXINFO WHERE RXInfoID = ?"), {*id})
            .toInt() == 0) {
        return line.failed(QStringLiteral("no fill with RXInfoID %1").arg(*id));
    }
    clsPrescription rx;
    rx.setConnection(db);
    rx.RXInfoID = *id;
    rx.GetData();
    choosePriceTables(line, *db, rx);
    const Prices prices = priced(line, rx);
    if (line.json()) {
        printJson(rx, prices, session.reports());
        return session.reports().isEmpty() ? kExitOk : kExitFailed;
    }
    printText(rx, prices);
    return session.printReports() == 0 ? kExitOk : kExitFailed;
}

}  // namespace

Command priceCommand() {
    return {QStringLiteral("price"), QStringLiteral("price a fill by the pharmacy's price tables"),
            QStringLiteral("Chooses the fill's retail and copay tables as SetPriceTables does and\n"
                           "prices it: the retail price with the band it came from, the copay,\n"
                           "and the price by a table of your choice. Nothing is stored."),
            declare, run};
}

}  // namespace tvrx::cli
