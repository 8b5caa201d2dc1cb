#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include "session/text/Encodings.h"

#include <vector>

namespace tvrx::response {

// The coded fields of one text (field separator, two-character code, value), found in one
// pass so that a decoding reads each field without searching the text again. A value comes
// out exactly as GetField reads it: the first field with the code counts; a value runs to
// the next field separator and loses its last character if a group or segment separator
// stands in it; the last field ends at a byte 225, a carriage return or the end of the text.
//
// Codes are two or more characters, none of them a separator or terminator, as all the
// layouts' codes are. A text past the 16-bit
// positions GetField works with is read by GetField itself, so that its reports stay what
// they are.
class FieldReader {
public:
    // closing: characters that close the text: its last field runs into them, but they
    // are part of no value. separator: what opens each field. The text must outlive the
    // reader.
    explicit FieldReader(QStringView text, QLatin1StringView closing = {},
                         char16_t separator = mdlMain::kFieldSeparator);

    // Position (from 1) of the separator that opens the first field `code` at or after
    // position `from`; 0 when there is none.
    qsizetype find(QLatin1StringView code, qsizetype from = 1) const;
    // Position of the first field `code` whose value starts with the decimal digits of n.
    qsizetype findNumbered(QLatin1StringView code, int n) const;
    // Position of the first separator after position `at`; 0 when there is none.
    qsizetype separatorAfter(qsizetype at) const;

    // True when no position in the text goes past GetField's 16-bit reach.
    static bool withinReach(QStringView text, QLatin1StringView closing = {});

    // The value of the first field `code`; empty when there is none. As in GetField, the
    // value starts three characters after the separator, whatever the code's length.
    QStringView value(QLatin1StringView code) const;
    QString text(QLatin1StringView code) const { return value(code).toString(); }

private:
    struct Entry {
        qsizetype at;        // index of the separator, from 0
        char32_t key;        // the two characters behind it
        bool crossesGroup;   // a group or segment separator stands before the next separator
        qint32 nextSameKey;  // index of the next entry with this key; -1 for the last
    };

    qsizetype indexOf(QLatin1StringView code, qsizetype from) const;
    bool holds(qsizetype at, QLatin1StringView part) const;
    void markStop(qsizetype at, char16_t c);
    void indexKeys();
    qint32 firstWithKey(char32_t key) const;
    qsizetype bucketOf(char32_t key) const;
    QStringView direct(qsizetype index) const;
    QStringView throughGetField(QLatin1StringView code) const;

    QStringView text_;
    QLatin1StringView closing_;
    char16_t separator_;
    bool direct_;
    QVarLengthArray<Entry, 128> entries_;
    // Open-addressed table from a key to its first entry (-1 for an empty bucket); its size
    // is a power of two at least twice the number of entries.
    QVarLengthArray<qint32, 256> firstByKey_;
    // The first byte 225 and the first carriage return behind the last separator.
    qsizetype alternativeEnd_ = -1;
    qsizetype returnEnd_ = -1;
    // Values GetField returned, which value() hands out views of.
    mutable std::vector<QString> read_;
};

}  // namespace tvrx::response
