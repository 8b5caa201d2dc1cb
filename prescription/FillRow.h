#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <QVariantList>

namespace tvrx {

class Frame;
class RecordSet;
class clsPrescription;

// How the operations that make a fill from an earlier one (a refill, a new number) read
// that fill's row, and what they take from it.
namespace fillrow {

QVariant column(const RecordSet& rs, const char* name);
// A column followed by an empty text: a null reads as the empty text.
QString text(const RecordSet& rs, const char* name);
QVariant orZero(const RecordSet& rs, const char* name);
// The text "0" followed by the column, to be converted: a null reads 0.
QVariant zeroText(const RecordSet& rs, const char* name);
QDateTime today();

// What the new row does not take from the earlier fill.
struct NewFill {
    qint32 number = 0;
    qint32 refill = 0;
    double qty = 0;
    double refills = 0;
    double qtyRemain = 0;
    qint32 rphId = 0;
    qint32 techId = 0;
};

// The values of a new row in dbo.NewRefill's order: the new fill's own, the present time
// as its date, and everything else from the earlier fill.
QVariantList newRefillValues(const RecordSet& last, const NewFill& fill);

// What the new fill keeps of the earlier one in memory, for the caller's Update: notes,
// formula, dispensed NDC, the insurance data, the other coverage and its kind; the other
// payer's amounts and result start empty, dated today.
void carryOver(Frame& frame, clsPrescription& rx, const RecordSet& last);

}  // namespace fillrow
}  // namespace tvrx
