#pragma once

#include "claims/ClaimLayout.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

// Reading a claim text back with the tables that wrote it, for whoever must check what a
// claim said: a person looking for a wrong byte, or a payer answering it. Identified
// fields and segments are found by their codes; a fixed head is cut by its nominal widths,
// and only when it has exactly the length they add up to (pictures are never cut, so a
// head can be longer). What does not fit is reported, never corrected.
namespace tvrx::claims {

struct ReadField {
    QString segment;  // "AM07"; empty outside segments
    QString code;     // empty for an item of a fixed head; "AM" for a segment's own code
    QString name;     // the layout's name of the field; empty when the layout has none
    QString value;    // the characters after the code, as they stand
    // The value by the field's encoding: an amount for an over-punched field, a number for
    // digits, a date, a text without its blank fill. Invalid for a field the layout lacks.
    QVariant decoded;
};

struct Reading {
    QList<ReadField> fields;
    QStringList problems;

    // The first field with the code, within the segment when one is named.
    const ReadField* find(QStringView code, QStringView segment = {}) const;
};

// One transaction read with one layout.
Reading readLayout(const Layout& layout, QStringView text);

// A transmission split into its transactions: a claim's header and each prescription's
// body, or a reversal. The layouts come from the Form in the text's head; a body alone
// (opening with the group separator) needs the Form it was built for.
struct Transaction {
    QString title;   // "Header", "Claim 1", "Reversal"
    QString layout;  // the Form of the layout it was read with ("other" for the default)
    Reading reading;
};
QList<Transaction> readTransmission(QStringView text, const QString& bodyForm = {});

}  // namespace tvrx::claims
