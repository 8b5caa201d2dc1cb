#include "responses/ResponseLayout.h"
#include "responses/TextPositions.h"
#include "responses/clsClaimResponse.h"
#include "session/Conversions.h"
#include "session/Encodings.h"
#include "session/ErrorNumbers.h"
#include "session/Failure.h"
#include "session/Frame.h"

#include <array>

namespace tvrx {

using namespace response;

namespace {

template <class Text>
QString phrase(QLatin1StringView prefix, Text text) {
    QString result;
    result.reserve(prefix.size() + text.size());
    result.append(prefix);
    result.append(text);
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
        target = phrase(list.prefix, slots_[slot - 1]);
    }

private:
    std::array<QLatin1StringView, kDurSlots> slots_{};
};

// A date or quantity is shown as it was received; one that is no number above 0 is absent.
void setReceived(QString& target, QLatin1StringView prefix, const QString& text) {
    if (numericValue(text) > 0) target = phrase(prefix, text);
}

// One finding, each field read through value(field): the field's text as the format holds
// it. The caller loads the severity words.
template <class Value>
DUR readFinding(Frame& frame, DurWords& words, const Value& value) {
    DUR finding;
    frame([&] { finding.Number = value(DurField::Reason); });
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
        const QString text = value(DurField::Text);
        if (!text.isEmpty() && text != kNoMessage) finding.Message = phrase(kMessagePhrase, text);
    });
    return finding;
}

void addFinding(colDUR& findings, const DUR& finding) {
    findings.Add(finding.Number, finding.Severity, finding.LastFillDate, finding.LastFillLocation,
                 finding.LastFillQty, finding.DB, finding.Prescriber, finding.Message);
}

// The group of a "51" DUR segment numbered n, searched from the start of the segment; the
// search for 1 also finds a group numbered 10 or 11 when none is numbered 1.
qsizetype findGroup(const QString& segment, QLatin1StringView counter, int n) {
    const QString opening = QChar(mdlMain::kFieldSeparator) + QString(counter) + QString::number(n);
    return find(segment, opening);
}

// The group from its number to the next counter field (or the end of the segment),
// closed by ":".
QString groupText(const QString& segment, QLatin1StringView counter, qsizetype at) {
    const qsizetype next = findField(segment, counter, at + 1);
    const qsizetype length =
        next > 0 ? next - (at + kValueOffset) : segment.size() - (at + kValueOffset - 1);
    QString group = mid(segment, at + kValueOffset, length).toString();
    group.append(kDurGroupClose);
    return group;
}

// A field of a group. The group's last field runs into the ":" that closes the group, which
// is not part of its value: the value reads as the payer sent it.
QString groupField(const QString& group, QLatin1StringView code) {
    QString value = fieldValue(group, code);
    const qsizetype valueStart = findField(group, code) + kValueOffset;
    if (!value.isEmpty() && valueStart + value.size() - 1 == group.size()) value.chop(1);
    return value;
}

}  // namespace

void clsClaimResponse::ParseDUR(const QString& sDUR) {
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
        const DUR finding = readFinding(frame, words, value);
        frame([&] { addFinding(*colDUR(), finding); });
    }
    frame([&] {
        if (numericValue(mid(sDUR, kDurExtraCode)) == kDurExtraCallProcessor) {
            values_.DURExtra = QString(kDurExtraText);
        }
    });
}

void clsClaimResponse::Parse51DUR(const QString& sDUR) {
    Frame frame(QStringLiteral("clsClaimResponse:Parse51DUR"));
    frame([&] { colDUR_ = std::make_shared<tvrx::colDUR>(); });
    QLatin1StringView counter;
    for (const QLatin1StringView code : kDurCounterCodes) {
        if (findField(sDUR, code) > 0) {
            counter = code;
            break;
        }
    }
    if (counter.isEmpty()) return;
    DurWords words;
    for (int n = 1;; ++n) {
        const qsizetype at = findGroup(sDUR, counter, n);
        if (at <= 0) break;
        QString group;
        frame([&] { group = groupText(sDUR, counter, at); });
        words.load(kSeverityList);
        const auto value = [&](DurField field) { return groupField(group, placeOf(field).code51); };
        const DUR finding = readFinding(frame, words, value);
        frame([&] { addFinding(*colDUR(), finding); });
    }
}

}  // namespace tvrx
