#pragma once

#include "prescription/clsPrescription.h"
#include "session/runtime/KeyedCollection.h"

#include <QString>

#include <memory>

namespace tvrx {

// The prescriptions of one claim, in order, each optionally under a key.
//
// Item and Remove raise the collection's failure (9 for a position out of range, 5 for an
// unknown key) into the caller's frame, as the host platform's collections do.
class colRX {
public:
    using Pointer = std::shared_ptr<clsPrescription>;

    // Given to every prescription that Add creates.
    QString PrintDevice;

    // Creates a prescription with this collection's PrintDevice and adds it, under sKey
    // when that is not empty. A key already in use is reported, and the new prescription
    // is returned all the same, outside the collection.
    Pointer Add(const QString& sKey = {});

    Pointer Item(int position) const { return items_.Item(position); }
    Pointer Item(const QString& key) const { return items_.Item(key); }
    int Count() const { return items_.Count(); }
    void Remove(int position) { items_.Remove(position); }
    void Remove(const QString& key) { items_.Remove(key); }
    QString keyAt(int position) const { return items_.keyAt(position); }

    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

private:
    KeyedCollection<clsPrescription> items_;
};

}  // namespace tvrx
