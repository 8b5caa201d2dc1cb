#pragma once

#include "session/runtime/KeyedCollection.h"

#include <QString>

#include <memory>

namespace tvrx {

// One drug utilisation review finding of a payer. Every member but Number holds a finished
// phrase ("SEVERITY = MAJOR"), shown to the pharmacist as it stands; Number is the reason
// code as sent.
class DUR {
public:
    QString ServiceCode;
    QString Message;
    QString Prescriber;
    QString DB;
    QString LastFillQty;
    QString LastFillLocation;
    QString LastFillDate;
    QString Severity;
    QString Number;
};

// The DUR findings of one response, in the order the payer sent them.
class colDUR : public KeyedCollection<DUR> {
public:
    // Makes a DUR, fills it and appends it, under sKey unless sKey is empty.
    std::shared_ptr<DUR> Add(const QString& Number, const QString& Severity,
                             const QString& LastFillDate, const QString& LastFillLocation,
                             const QString& LastFillQty, const QString& DB,
                             const QString& Prescriber, const QString& Message,
                             const QString& ServiceCode = {}, const QString& sKey = {});
};

}  // namespace tvrx
