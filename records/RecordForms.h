#pragma once

#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"

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

// The GetData of a plain record: opens the query for the key on the main connection and,
// if it has a row, reads the order's columns into the record, one frame step each; a
// missing row leaves the record as it was. A failed test for the row reads on, as the
// original handler resumed inside the block. The record set is closed at the end.
template <class Record>
void loadRow(Frame& frame, const ColumnTable<Record>& table, const QString& query,
             const QVariant& key, Record& record, const ColumnOrder& order) {
    RecordSet rs;
    frame([&] { rs = mainConnection().OpenRecordSet(query, {key}); });
    bool hasRow = true;
    frame([&] { hasRow = !rs.Eof(); });
    if (hasRow) table.read(frame, rs, record, order);
    frame([&] {
        if (rs.State() == 1) rs.Close();
    });
}

// A date written as "MM/DD/YYYY" between quotes: the day alone, without its time.
inline WriteForm day() {
    return WriteForm::date(QStringLiteral("MM/DD/YYYY"));
}

// A zip code read as ZipString makes it of the column's text: "73072-5555", or the digits
// padded with NUL to ten characters.
ReadForm zipOfText();
// A telephone read as PhoneString makes it of the column's text: "(555) 555-0199".
ReadForm phoneOfText();

}  // namespace tvrx::records
