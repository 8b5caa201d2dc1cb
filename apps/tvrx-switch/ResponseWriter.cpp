// Writes answers where the library's decoder reads them: every position and field code
// comes from the decoder's own layout (responses/ResponseLayout.h).
#include "ResponseWriter.h"

#include "responses/ResponseFile.h"
#include "responses/ResponseLayout.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <algorithm>

namespace tvrx::sw {

namespace {

using response::Span;

constexpr QChar kStart(mdlMain::kStartOfText);
constexpr QChar kEnd(mdlMain::kEndOfText);
constexpr QChar kField(mdlMain::kFieldSeparator);
constexpr QChar kGroup(mdlMain::kGroupSeparator);
constexpr QChar kSegment(mdlMain::kSegmentSeparator);

const QLatin1StringView kAccepted("A");
const QLatin1StringView kVersion32("32");
const QLatin1StringView kClaim51("B1");
// The rest of a header: the pharmacy and the date of service, as the request sent them.
constexpr qsizetype kFixedPharmacyWidth = 12;
constexpr qsizetype kPharmacyWidth51 = 15;
constexpr qsizetype kDayWidth = 8;
// Amounts of a fixed answer take six characters.
constexpr qsizetype kFixedAmountWidth = 6;
constexpr qsizetype kRejectCodesAtMost = 20;
constexpr qsizetype kReversalRejectCodesAtMost = 10;
// The check byte ends a fixed file: a letter, never a blank, so that the reader's trim
// leaves the trailer whole.
constexpr int kLetters = 26;
// In a fixed answer the reader puts six characters in front of each group, so a group's
// first character (its byte 29) stands at position 7 of the text the decoder reads.
constexpr qsizetype kGroupFirstPosition = 7;
const QLatin1StringView kHelpDeskQualifier("03");
const QLatin1StringView kPrescriptionRefQualifier("1");
constexpr qint64 kLargestDurQuantity = 99999;

// A text whose characters stand at fixed positions, blank-filled in between.
class Positions {
public:
    explicit Positions(qsizetype firstPosition) : first_(firstPosition) {}
    // The value cut or filled with blanks to the span.
    void put(Span span, QStringView value) {
        const qsizetype at = span.position - first_;
        if (text_.size() < at + span.length) text_.resize(at + span.length, u' ');
        const qsizetype length = std::min(span.length, value.size());
        std::copy(value.begin(), value.begin() + length, text_.begin() + at);
    }
    void put(qsizetype position, QStringView value) { put({position, value.size()}, value); }
    const QString& text() const { return text_; }

private:
    qsizetype first_;
    QString text_;
};

QString digits(qint64 value, int width) {
    return QStringLiteral("%1").arg(value, width, 10, QLatin1Char('0'));
}

QString punched(qint64 cents) {
    double amount = static_cast<double>(cents);
    return mdlMain::OverPunchReturn(amount);
}

QString fixedAmount(qint64 cents) {
    return punched(cents).right(kFixedAmountWidth);
}

QString filled(const QString& text, qsizetype width) {
    return text.leftJustified(width, u' ', true);
}

qint64 amountOf(const Outcome& outcome, double ResponseValues::*member) {
    if (member == &ResponseValues::Copay) return outcome.amounts.patientPay;
    if (member == &ResponseValues::Cost) return outcome.amounts.ingredientCost;
    if (member == &ResponseValues::Fee) return outcome.amounts.dispensingFee;
    if (member == &ResponseValues::SalesTax) return outcome.amounts.salesTax;
    return outcome.amounts.totalPaid;
}

// ---- Fixed family -------------------------------------------------------------------

QString durValue(const DurFinding& finding, response::DurField field) {
    switch (field) {
        case response::DurField::Reason:
            return finding.reason;
        case response::DurField::Severity:
            return QString::number(finding.severity);
        case response::DurField::WhereFilled:
            return QString::number(finding.whereFilled);
        case response::DurField::Date:
            return finding.fillDate;
        case response::DurField::Quantity:
            return conv::Format(std::min<double>(finding.quantity, kLargestDurQuantity),
                                QStringLiteral("00000"));
        case response::DurField::Database:
            return QString::number(finding.database);
        case response::DurField::Prescriber:
            return QString::number(finding.prescriber);
        case response::DurField::Text:
            return finding.text;
    }
    return {};
}

constexpr response::DurField kDurFieldsInOrder[] = {
    response::DurField::Reason,     response::DurField::Severity, response::DurField::WhereFilled,
    response::DurField::Date,       response::DurField::Quantity, response::DurField::Database,
    response::DurField::Prescriber, response::DurField::Text};

// The findings from the first record of the block on; the last position stays blank.
void putDurBlock(Positions& text, Span block, const QList<DurFinding>& findings) {
    text.put(block, QString());
    const qsizetype records = std::min<qsizetype>(findings.size(), response::kFixedDurRecords);
    for (qsizetype r = 0; r < records; ++r) {
        const qsizetype recordStart = block.position + r * response::kFixedDurRecordLength;
        for (const response::DurField field : kDurFieldsInOrder) {
            const Span place = response::placeOf(field).fixed;
            text.put({recordStart + place.position - 1, place.length},
                     durValue(findings[r], field));
        }
    }
}

QString fixedGroup(const Outcome& outcome, bool version40) {
    Positions group(kGroupFirstPosition);
    group.put(kGroupFirstPosition, QString(kGroup));
    group.put(response::kFixedStatus, QString(outcome.status));
    if (outcome.status == u'R') {
        const qsizetype count = std::min<qsizetype>(outcome.rejects.size(), kRejectCodesAtMost);
        group.put(response::kRejectCount, digits(count, 2));
        for (qsizetype i = 1; i <= count; ++i) {
            group.put({response::kRejectCodesFrom + 2 * i, response::kRejectCodeLength},
                      outcome.rejects[i - 1]);
        }
        group.put(response::kRejectMessage, outcome.message);
        if (!version40 && !outcome.findings.isEmpty()) {
            putDurBlock(group, response::kRejectDur, outcome.findings);
        }
        return group.text();
    }
    if (outcome.status == u'C') {
        if (version40) {
            group.put(response::kCapturedReference40, outcome.reference);
            group.put(response::kCapturedTailPosition, outcome.message);
        } else {
            putDurBlock(group, response::kCapturedDur, outcome.findings);
        }
        return group.text();
    }
    for (const response::FixedAmount& amount : response::kFixedAmounts) {
        group.put(amount.span, fixedAmount(amountOf(outcome, amount.amount)));
    }
    group.put(response::kFixedReference, outcome.reference);
    group.put(version40 ? response::kFixedMessage40 : response::kFixedMessage, outcome.message);
    if (!version40 && !outcome.findings.isEmpty()) {
        putDurBlock(group, response::kFixedPaidDur, outcome.findings);
    }
    return group.text();
}

QChar checkByte(const QString& text) {
    int value = 0;
    for (qsizetype i = 1; i < text.size(); ++i) value ^= text[i].unicode() & 0xFF;
    return QChar(u'A' + value % kLetters);
}

QString withFixedTrailer(QString text) {
    text += kEnd;
    return text + checkByte(text);
}

QString fixedVersion(const Transmission& transmission) {
    const QString& version = transmission.version;
    const bool readable =
        version.size() == 2 &&
        std::all_of(version.begin(), version.end(), [](QChar c) { return c.isLetterOrNumber(); });
    return readable ? version : QString(kVersion32);
}

QString fixedReversal(const Transmission& transmission, const Outcome& outcome) {
    Positions file(1);
    file.put(1, QString(kStart) + fixedVersion(transmission) +
                    QLatin1StringView(response::kReversalCodeFixed) + outcome.status);
    const qsizetype count = std::min<qsizetype>(outcome.rejects.size(), kReversalRejectCodesAtMost);
    file.put(response::kReversalRejectCount, digits(count, 2));
    for (qsizetype i = 1; i <= count; ++i) {
        file.put({response::kReversalRejectCodesFrom + 2 * i, response::kRejectCodeLength},
                 outcome.rejects[i - 1]);
    }
    file.put(response::kReversalMessage, outcome.message);
    return withFixedTrailer(file.text());
}

QString fixedFile(const Transmission& transmission, const Answer& answer) {
    if (transmission.reversal) return fixedReversal(transmission, answer.outcomes.value(0));
    const QString version = fixedVersion(transmission);
    QString file =
        QString(kStart) + version + digits(answer.outcomes.size(), 2) +
        (answer.headerRejected ? QString(response::kHeaderRejected) : QString(kAccepted)) +
        filled(transmission.value(Value::PharmacyId).trimmed(), kFixedPharmacyWidth) +
        filled(transmission.value(Value::DateOfService).trimmed(), kDayWidth);
    const bool version40 = version == response::kVersion40;
    for (const Outcome& outcome : answer.outcomes) file += fixedGroup(outcome, version40);
    return withFixedTrailer(file);
}

// ---- Format 51 ----------------------------------------------------------------------

class Segments {
public:
    void open(const char* code) {
        text_ += kSegment;
        field(QStringLiteral("AM"), QLatin1String(code));
    }
    void field(const QString& code, const QString& value) {
        text_ += kField;
        text_ += code;
        text_ += value;
    }
    QString& text() { return text_; }

private:
    QString text_;
};

QString paidCode(double ResponseValues::*amount) {
    for (const response::PaidField& field : response::kPaidFields51) {
        if (field.amount == amount) return QString(field.code);
    }
    return {};
}

QString textCode(QString ResponseValues::*text) {
    for (const response::PaidField& field : response::kPaidFields51) {
        if (field.text == text) return QString(field.code);
    }
    return {};
}

void putRejects(Segments& s, const Outcome& outcome) {
    s.field(response::kFieldRejectCount, digits(outcome.rejects.size(), 2));
    for (const QString& code : outcome.rejects) s.field(response::kFieldRejectCode, code);
}

void putFindings51(Segments& s, const QList<DurFinding>& findings) {
    if (findings.isEmpty()) return;
    s.open("24");
    for (qsizetype n = 0; n < findings.size(); ++n) {
        s.field(response::kDurCounterCodes[0], QString::number(n + 1));
        for (const response::DurField field : kDurFieldsInOrder) {
            QString value = durValue(findings[n], field);
            if (field == response::DurField::Quantity)
                value = conv::NumberText(findings[n].quantity);
            s.field(response::placeOf(field).code51, value);
        }
    }
}

QString group51(const Outcome& outcome) {
    Segments s;
    s.text() += kGroup;
    const bool rejected = outcome.status == u'R';
    if (!rejected && !outcome.message.isEmpty()) {
        s.open("20");
        s.field(response::kFieldMessage, outcome.message);
    }
    s.open("21");
    s.field(response::kFieldStatus, QString(outcome.status));
    if (rejected) {
        putRejects(s, outcome);
        s.field(response::kFieldAdditionalMessage, outcome.message);
        if (!outcome.helpDesk.isEmpty()) {
            s.field(response::kFieldPhone, outcome.helpDesk);
            s.field(QStringLiteral("7F"), kHelpDeskQualifier);
        }
    } else {
        s.field(textCode(&ResponseValues::Reference), outcome.reference);
    }
    s.open("22");
    s.field(QStringLiteral("EM"), kPrescriptionRefQualifier);
    s.field(response::kFieldPrescriptionRef, outcome.rxNumber.trimmed());
    if (!rejected) {
        s.open("23");
        s.field(paidCode(&ResponseValues::Copay), punched(outcome.amounts.patientPay));
        s.field(paidCode(&ResponseValues::Cost), punched(outcome.amounts.ingredientCost));
        s.field(paidCode(&ResponseValues::Fee), punched(outcome.amounts.dispensingFee));
        if (outcome.amounts.salesTax != 0)
            s.field(paidCode(&ResponseValues::SalesTax), punched(outcome.amounts.salesTax));
        s.field(paidCode(&ResponseValues::TotalPaid), punched(outcome.amounts.totalPaid));
        if (outcome.coinsurance) {
            s.field(paidCode(&ResponseValues::Coinsurance), punched(outcome.amounts.patientPay));
        }
    }
    putFindings51(s, outcome.findings);
    if (!rejected && !outcome.planId.isEmpty()) {
        s.open("25");
        s.field(textCode(&ResponseValues::PlanID), outcome.planId);
    }
    return s.text();
}

// A reversal answer is decoded whole: its last field is one the decoder does not read for
// that status, so the end byte behind it does no harm.
QString reversalGroup51(const Outcome& outcome) {
    Segments s;
    s.text() += kGroup;
    s.open("22");
    s.field(QStringLiteral("EM"), kPrescriptionRefQualifier);
    s.field(response::kFieldPrescriptionRef, outcome.rxNumber.trimmed());
    s.open("21");
    s.field(response::kFieldStatus, QString(outcome.status));
    if (outcome.status == u'R') {
        putRejects(s, outcome);
        s.field(response::kFieldAdditionalMessage, outcome.message);
    } else {
        s.field(response::kFieldAdditionalMessage, outcome.message);
        s.field(textCode(&ResponseValues::Reference), outcome.reference);
    }
    return s.text();
}

QString file51(const Transmission& transmission, const Answer& answer) {
    const QString code =
        transmission.reversal ? QString(response::kReversalCode51) : QString(kClaim51);
    QString file =
        QString(kStart) + response::kVersion51 + code + QString::number(answer.outcomes.size()) +
        (answer.headerRejected ? QString(response::kHeaderRejected) : QString(kAccepted)) +
        filled(transmission.value(Value::PharmacyId).trimmed(), kPharmacyWidth51) +
        filled(transmission.value(Value::DateOfService).trimmed(), kDayWidth);
    for (const Outcome& outcome : answer.outcomes) {
        file += transmission.reversal ? reversalGroup51(outcome) : group51(outcome);
    }
    return file + kEnd;
}

}  // namespace

QString writeResponse(const Transmission& transmission, const Answer& answer) {
    return transmission.family == Family::Segmented ? file51(transmission, answer)
                                                    : fixedFile(transmission, answer);
}

}  // namespace tvrx::sw
