#pragma once

#include "JsonOutput.h"

#include <QString>

#include <memory>

namespace tvrx {

class DbConnection;
class clsPrescription;

namespace cli {

class CommandLine;

// The options every command that prices a fill takes: the host's default tables for
// generic and brand drugs, and an alternate price source.
void declarePricingOptions(CommandLine& line);

// Reads the alternate price source of "--alt-db" into the session, if one is given; false
// (after a line on stderr) when it cannot be opened.
bool useAlternateSource(const CommandLine& line);

// Chooses the fill's tables as a host does: the patient's own table from the patient's
// record, the host's defaults from the options or else the pharmacy's cash table.
void choosePriceTables(const CommandLine& line, DbConnection& db, clsPrescription& rx);

// Prices a fill by the tables chosen and stores it: retail and price by the retail table,
// the copay by the plan or the copay table; a fill without a table of its own keeps the
// retail table as its own.
void priceAndSave(const CommandLine& line, DbConnection& db, clsPrescription& rx);

// The fill as "tvrx new" and "tvrx refill" show it, in text or as JSON members.
void printFill(clsPrescription& rx);
JsonObjectText fillJson(clsPrescription& rx);

}  // namespace cli
}  // namespace tvrx
