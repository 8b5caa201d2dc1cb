#pragma once

#include "claims/ClaimValues.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <span>

// A claim layout as data: each fixed head and each group of identified fields or segment
// is a table of fields, and one engine writes a transaction from prepared values with it
// and reads a transaction back into its fields. The tables stand in claims/*Layouts.cpp,
// in the order the payer expects the fields.
namespace tvrx {
class Frame;
}

namespace tvrx::claims {

// How a value becomes the characters of a field.
enum class Encoding : quint8 {
    None,     // the field is its code and constant alone
    Text,     // the text as it stands
    Fill,     // the text cut or filled with blanks on the right to the width
    Digits,   // the number with at least `width` digits, leading zeros (a picture "000")
    Day,      // the date as YYYYMMDD
    Punched,  // the amount in whole hundredths, eight digits, the last one over-punched
};

// When a field, or a whole group or segment, goes out.
struct Condition {
    enum class Kind : quint8 { Always, Flag, NotFlag, Switch };
    Kind kind = Kind::Always;
    Flag flag = Flag::Medicare;
    // A switch is on when its text occurs anywhere in the plan's switches, letter case
    // as written.
    QLatin1StringView text = {};
};

constexpr Condition always() {
    return {};
}
constexpr Condition when(Flag flag) {
    return {Condition::Kind::Flag, flag};
}
constexpr Condition unless(Flag flag) {
    return {Condition::Kind::NotFlag, flag};
}
constexpr Condition onSwitch(const char* text) {
    return {Condition::Kind::Switch, Flag::Medicare, QLatin1StringView(text)};
}

inline constexpr qint16 kNoWidth = -1;
inline constexpr quint8 kNoSource = 0xFF;

// One field. In a fixed head it has no code and stands by position alone; elsewhere it is
// the field separator, the code, the constant, then the value.
struct Field {
    QLatin1StringView code;
    QLatin1StringView name;
    QLatin1StringView constant;  // literal characters before the value, or the whole value
    qint16 width = kNoWidth;     // the value's nominal width, the constant not counted
    quint8 source = kNoSource;   // a Value, or an ItemValue in a repeated group
    Encoding encoding = Encoding::None;
    Condition condition = {};

    // The characters this field nominally takes after its code.
    constexpr qint16 nominalWidth() const {
        const auto fixed = static_cast<qint16>(constant.size());
        return width == kNoWidth ? fixed : static_cast<qint16>(fixed + width);
    }
};

// A group of fields: the fixed head of a transaction, a run of identified fields, or a
// segment, which opens with the segment separator and its own code. Runs of fields that
// follow a segment belong to it and go out only with it. A group with a list goes out
// once for each item of the list, its fields taking their values from the item.
struct Part {
    enum class Kind : quint8 { Head, Fields, Segment };
    Kind kind = Kind::Fields;
    QLatin1StringView code;  // a segment's code ("AM07")
    QLatin1StringView name;
    std::span<const Field> fields;
    Condition condition = {};
    List list = List::None;
    char16_t lead = 0;  // a control byte written before the group (start of text, group separator)
};

struct Layout {
    QLatin1StringView name;
    std::span<const Part> parts;
};

// What a builder does with a field whose value failed. Every failure is reported with the
// frame's label either way.
enum class FailurePolicy {
    EmptyValue,   // the field is written with an empty value, padded as usual
    LeaveOut,     // the field is left out whole: separator, code and value
    EmptyResult,  // the whole text is empty
};

// Appends the transaction to `out`, as the bytes it goes out in: a character beyond 255
// becomes "?". Returns false, appending nothing, when the policy emptied the result.
bool writeLayout(QString& out, const Layout& layout, const Values& values, Frame& frame,
                 FailurePolicy policy);

// ---- Field constructors for the tables ---------------------------------------------

namespace field {

constexpr Field literal(const char* code, const char* constant, const char* name,
                        Condition condition = always()) {
    return {QLatin1StringView(code),
            QLatin1StringView(name),
            QLatin1StringView(constant),
            kNoWidth,
            kNoSource,
            Encoding::None,
            condition};
}

template <class Source>
constexpr Field of(const char* code, const char* name, Source source, Encoding encoding,
                   qint16 width, Condition condition = always(), const char* constant = "") {
    return {QLatin1StringView(code),
            QLatin1StringView(name),
            QLatin1StringView(constant),
            width,
            static_cast<quint8>(source),
            encoding,
            condition};
}

template <class Source>
constexpr Field fill(const char* code, const char* name, Source source, qint16 width,
                     Condition condition = always()) {
    return of(code, name, source, Encoding::Fill, width, condition);
}

template <class Source>
constexpr Field digits(const char* code, const char* name, Source source, qint16 width,
                       Condition condition = always()) {
    return of(code, name, source, Encoding::Digits, width, condition);
}

template <class Source>
constexpr Field text(const char* code, const char* name, Source source, qint16 nominal,
                     Condition condition = always()) {
    return of(code, name, source, Encoding::Text, nominal, condition);
}

template <class Source>
constexpr Field day(const char* code, const char* name, Source source,
                    Condition condition = always()) {
    return of(code, name, source, Encoding::Day, 8, condition);
}

template <class Source>
constexpr Field punched(const char* code, const char* name, Source source,
                        Condition condition = always()) {
    return of(code, name, source, Encoding::Punched, 8, condition);
}

// An item of a fixed head: no code, known by its position.
constexpr Field headLiteral(const char* constant, const char* name) {
    return literal("", constant, name);
}

}  // namespace field

constexpr Part head(const char* name, std::span<const Field> fields, char16_t lead) {
    return {Part::Kind::Head, {}, QLatin1StringView(name), fields, always(), List::None, lead};
}
constexpr Part fields(std::span<const Field> fields, Condition condition = always(),
                      List list = List::None) {
    return {Part::Kind::Fields, {}, {}, fields, condition, list, 0};
}
constexpr Part segment(const char* code, const char* name, std::span<const Field> fields,
                       Condition condition = always(), char16_t lead = 0) {
    return {Part::Kind::Segment,
            QLatin1StringView(code),
            QLatin1StringView(name),
            fields,
            condition,
            List::None,
            lead};
}

}  // namespace tvrx::claims
