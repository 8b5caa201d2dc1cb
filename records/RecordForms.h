#pragma once

#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"

namespace tvrx::records {

// The DateChanged column of an Update: the present date and time on the pharmacy's clock.
// Nothing reads it back into the record, so GetData does not select it.
template <class Record>
Property<Record> presentTime() {
    return {ValueType::Date, [](const Record&) { return QVariant(mdlMain::clock().now()); },
            [](Record&, const QVariant&) {}, false};
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
