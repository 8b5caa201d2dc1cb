#pragma once

#include "session/Clock.h"
#include "session/ColumnTable.h"
#include "session/Session.h"

namespace tvrx::records {

// The DateChanged column of an Update: the present date and time on the pharmacy's clock.
// Nothing reads it back into the record.
template <class Record>
Property<Record> presentTime() {
    return {ValueType::Date, [](const Record&) { return QVariant(mdlMain::clock().now()); },
            [](Record&, const QVariant&) {}};
}

// The columns a GetData selects and reads, in the order of the description.
template <class Record>
ColumnOrder readColumns(const ColumnTable<Record>& table) {
    ColumnOrder order;
    for (int i : table.all()) {
        if (table.columns()[static_cast<size_t>(i)].read.kind != ReadForm::Kind::NotRead)
            order.push_back(i);
    }
    return order;
}

// A zip code read as ZipString makes it of the column's text: "73072-5555", or the digits
// padded with NUL to ten characters.
ReadForm zipOfText();
// A telephone read as PhoneString makes it of the column's text: "(555) 555-0199".
ReadForm phoneOfText();

}  // namespace tvrx::records
