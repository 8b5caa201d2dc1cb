#include "responses/FieldReader.h"
#include "responses/ResponseLayout.h"
#include "responses/TextPositions.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <algorithm>
#include <array>

namespace tvrx {

using namespace response;

namespace {

QString phrase(QLatin1StringView prefix, QStringView text) {
    QString result;
    result.reserve(prefix.size() + text.size());
    result.append(prefix).append(text);
    return result;
}

// The five slots through which a DUR code becomes a word. Each list is loaded just before
// its field is read and fills only its own slots, so a code beyond its list's length reads
// whatever an earlier list left there.
class DurWords {
public:
    void load(const DurList& list) {
        for (int slot = 0; slot < list.length; ++slot) slots_[slot] = list.words[slot];
    }

    // Sets target to the list's prefix and the word for code, if the field takes that code.
    // A slot outside 1 to 5 does not exist (9), and target stays as it was.
    void setPhrase(QString& target, const DurList& list, double code) const {
        const bool taken = list.ignoresOtherCodes ? code >= 1 && code <= list.length : code > 0;
        if (!taken) return;
        const qint32 slot = conv::LongFromDouble(code);
        if (slot < 1 || slot > kDurSlots) fail(err::SubscriptOutOfRange);
        target = shared(list.prefix, slots_[slot - 1]);
    }

private:
    std::array<QLatin1StringView, kDurSlots> slots_{};
};

// A date or quantity is shown as it was received; one that is no number above 0 is absent.
void setReceived(QString& target, QLatin1StringView prefix, QStringView text) {
    if (numericValue(text) > 0) target = phrase(prefix, text);
}

// One finding, each field read through value(field): the field's text as the format holds
// it. The caller loads the severity words.
template <class Value>
DUR readFinding(Frame& frame, DurWords& words, const Value& value) {
    DUR finding;
    frame([&] { finding.Number = value(DurField::Reason).toString(); });
    frame([&] {
        words.setPhrase(finding.Severity, kSeverityList, numericValue(value(DurField::Severity)));
    });
    words.load(kWhereFilledList);
    frame([&] {
        words.setPhrase(finding.LastFillLocation, kWhereFilledList,
                        numericValue(value(DurField::WhereFilled)));
    });
    frame([&] { setReceived(finding.LastFillDate, kLastFillDatePhrase, value(DurField::Date)); });
    frame([&] { setReceived(finding.LastFillQty, kLastFillQtyPhrase, value(DurField::Quantity)); });
    words.load(kDatabaseList);
    frame([&] {
        words.setPhrase(finding.DB, kDatabaseList, numericValue(value(DurField::Database)));
    });
    words.load(kPrescriberList);
    frame([&] {
        words.setPhrase(finding.Prescriber, kPrescriberList,
                        numericValue(value(DurField::Prescriber)));
    });
    frame([&] {
        const QStringView text = value(DurField::Text);
        if (!text.isEmpty() && text != kNoMessage) finding.Message = phrase(kMessagePhrase, text);
    });
    return finding;
}

// What colDUR.Add does with the eight fields and no key, without copying them again.
void addFinding(colDUR& findings, DUR&& finding) {
    findings.KeyedCollection<DUR>::Add(std::make_shared<DUR>(std::move(finding)));
}

// The group at `at` runs from its number to the next counter field, or to the end of the
// segment.
QStringView groupText(QStringView segment, const FieldReader& fields, QLatin1StringView counter,
                      qsizetype at) {
    const qsizetype next = fields.find(counter, at + 1);
    const qsizetype length =
        next > 0 ? next - (at + kValueOffset) : segment.size() - (at + kValueOffset - 1);
    return mid(segment, at + kValueOffset, length);
}

}  // namespace

void clsClaimResponse::ParseDUR(QStringView sDUR) {
    Frame frame(QStringLiteral("clsClaimResponse:ParseDUR"));
    frame([&] { colDUR_ = std::make_shared<tvrx::colDUR>(); });
    // The severity words are loaded once, before the first record: later records read
    // their severity through what the other lists left in the slots.
    DurWords words;
    words.load(kSeverityList);
    for (int record = 0; record < kFixedDurRecords; ++record) {
        const qsizetype base = record * kFixedDurRecordLength;
        const auto value = [&](DurField field) {
            const Span span = placeOf(field).fixed;
            return trimmed(mid(sDUR, base + span.position, span.length));
        };
        DUR finding = readFinding(frame, words, value);
        frame([&] { addFinding(*colDUR(), std::move(finding)); });
    }
    frame([&] {
        if (numericValue(mid(sDUR, kDurExtraCode)) == kDurExtraCallProcessor) {
            values_.DURExtra = shared(kDurExtraText);
        }
    });
}

// The groups are numbered 1, 2 and so on; the search for each number starts from the
// beginning of the segment, so the search for 1 also finds a group numbered 10 or 11 when
// none is numbered 1. Each group is read as closed by ":", which its last field runs into
// but which is part of no value: that field reads as the payer sent it.
void clsClaimResponse::Parse51DUR(QStringView sDUR) {
    Frame frame(QStringLiteral("clsClaimResponse:Parse51DUR"));
    frame([&] { colDUR_ = std::make_shared<tvrx::colDUR>(); });
    const FieldReader fields(sDUR);
    const auto counter = std::find_if(kDurCounterCodes.begin(), kDurCounterCodes.end(),
                                      [&](QLatin1StringView code) { return fields.find(code); });
    if (counter == kDurCounterCodes.end()) return;
    DurWords words;
    for (int n = 1;; ++n) {
        const qsizetype at = fields.findNumbered(*counter, n);
        if (at <= 0) break;
        const FieldReader group(groupText(sDUR, fields, *counter, at), kDurGroupClose);
        words.load(kSeverityList);
        const auto value = [&](DurField field) { return group.value(placeOf(field).code51); };
        DUR finding = readFinding(frame, words, value);
        frame([&] { addFinding(*colDUR(), std::move(finding)); });
    }
}

}  // namespace tvrx
