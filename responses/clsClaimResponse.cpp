#include "responses/clsClaimResponse.h"

#include "responses/FieldReader.h"
#include "responses/RejectTable.h"
#include "responses/ResponseLayout.h"
#include "responses/TextPositions.h"
#include "session/data/Connections.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <algorithm>
#include <utility>

namespace tvrx {

using namespace response;

namespace {

// The common start refuses a text with one of these boxes; the decoding then returns False.
bool refuse(const QString& text, Icon icon) {
    mdlMain::user().MsgBox(text, Buttons::OKOnly, icon, 1, appConfig().Title);
    return false;
}

QString badStartText(char16_t value) {
    return QString(kBoxBadStartBefore) + QString::number(value) + kLineBreak + kBoxBadStartAfter;
}

bool isBlank(const QString& text) {
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c == u' '; });
}

}  // namespace

std::shared_ptr<tvrx::colReject> clsClaimResponse::colReject() const {
    if (!colReject_) colReject_ = std::make_shared<tvrx::colReject>();
    return colReject_;
}

void clsClaimResponse::setcolReject(std::shared_ptr<tvrx::colReject> value) {
    colReject_ = std::move(value);
}

std::shared_ptr<tvrx::colDUR> clsClaimResponse::colDUR() const {
    if (!colDUR_) colDUR_ = std::make_shared<tvrx::colDUR>();
    return colDUR_;
}

void clsClaimResponse::setcolDUR(std::shared_ptr<tvrx::colDUR> value) {
    colDUR_ = std::move(value);
}

bool clsClaimResponse::BuildResponse() {
    Frame frame(QStringLiteral("clsClaimResponse:BuildResponse"));
    const bool started = startDecoding(frame);
    if (started) {
        const QStringView version = mid(Claim, kVersion);
        const QStringView code = mid(Claim, kTransactionCode);
        // A start that fails keeps the rejects of the last decoding.
        frame([&] { colReject_ = std::make_shared<tvrx::colReject>(); });
        if (version == kVersion51) {
            code == kReversalCode51 ? decode51Reversal(frame) : decode51Claim(frame);
        } else {
            code == kReversalCodeFixed ? decodeFixedReversal(frame)
                                       : decodeFixedClaim(frame, version);
        }
    }
    rejectTable_.reset();
    return started;
}

bool clsClaimResponse::startDecoding(Frame& frame) {
    bool connected = false;
    frame([&] {
        RejectTable::noteLookupState();
        connected = mdlMain::ConnectLookup();
    });
    if (!connected) return refuse(QString(kBoxLookupFailed), Icon::Critical);
    frame([&] { rejectTable_ = RejectTable::forLookupConnection(); });
    if (!rejectTable_ || rejectTable_->empty()) {
        return refuse(QString(kBoxNoRejectCodes), Icon::Critical);
    }
    Reversal = false;
    HeaderRejected = mid(Claim, kHeaderStatus) == kHeaderRejected;
    if (isBlank(Claim)) return refuse(QString(kBoxClaimNotSet), Icon::Critical);
    // Read through a const reference: a writable front() would copy the shared text.
    const char16_t first = std::as_const(Claim).front().unicode();
    if (first != kStartByte && first != kAlternativeStartByte) {
        return refuse(badStartText(first), Icon::Information);
    }
    return true;
}

// ---- Fixed formats --------------------------------------------------------------------

void clsClaimResponse::decodeFixedClaim(Frame& frame, QStringView version) {
    const QStringView status = mid(Claim, kFixedStatus);
    const bool version40 = version == kVersion40;
    if (status == kStatusPaid || status == kStatusDuplicate) {
        decodeFixedPaid(frame, version40, status);
    } else if (status == kStatusCaptured) {
        decodeFixedCaptured(frame, version40);
    } else if (status == kStatusRejected) {
        decodeFixedRejected(frame, version40);
    }
}

void clsClaimResponse::decodeFixedPaid(Frame& frame, bool version40, QStringView status) {
    for (const FixedAmount& amount : kFixedAmounts) {
        frame([&] { values_.*amount.amount = overPunched(mid(Claim, amount.span)); });
    }
    frame([&] { values_.Reference = mid(Claim, kFixedReference).toString(); });
    frame([&] {
        values_.Message =
            trimmed(mid(Claim, version40 ? kFixedMessage40 : kFixedMessage)).toString();
    });
    if (!version40) {
        frame([&] { values_.MessageTwo = trimmed(mid(Claim, kFixedMessageTwo)).toString(); });
        frame([&] { ParseDUR(trimmed(mid(Claim, kFixedPaidDur))); });
    }
    values_.Total = values_.TotalPaid + values_.Copay;
    values_.PaidStatus = shared(status == kStatusDuplicate ? kWordDuplicate : kWordPaid);
    values_.PAID = 1;
}

void clsClaimResponse::decodeFixedCaptured(Frame& frame, bool version40) {
    if (version40) {
        frame([&] { values_.Reference = mid(Claim, kCapturedReference40).toString(); });
        if (Claim.size() > kCapturedMessagesAfter) {
            QStringView tail;
            qsizetype secondStop = 0;
            frame([&] {
                tail = mid(Claim, kCapturedTailPosition, Claim.size() - kCapturedTailShorterBy);
            });
            frame([&] { secondStop = find(tail, kFullStop, find(tail, kFullStop) + 1); });
            frame([&] { values_.Message = left(tail, secondStop).toString(); });
            frame([&] {
                values_.MessageTwo =
                    mid(tail, secondStop + 1, tail.size() - secondStop + 1).toString();
            });
        }
    } else {
        frame([&] { ParseDUR(trimmed(mid(Claim, kCapturedDur))); });
    }
    values_.PAID = 1;
    values_.PaidStatus = shared(kWordCaptured);
}

void clsClaimResponse::decodeFixedRejected(Frame& frame, bool version40) {
    const bool duplicate = readFixedRejects(frame, kRejectCount, kRejectCodesFrom, true);
    frame([&] { values_.Message = trimmed(mid(Claim, kRejectMessage)).toString(); });
    if (version40) {
        frame([&] {
            values_.MessageTwo = trimmed(mid(Claim, kRejectMessageTwoPosition40,
                                             Claim.size() - kRejectMessageTwoShorterBy40))
                                     .toString();
        });
    } else {
        frame([&] { ParseDUR(trimmed(mid(Claim, kRejectDur))); });
    }
    frame([&] { values_.Reference = mid(Claim, kRejectReference).toString(); });
    setRejected(duplicate);
}

void clsClaimResponse::decodeFixedReversal(Frame& frame) {
    Reversal = true;
    const QStringView status = mid(Claim, kReversalStatus);
    if (status == kStatusAccepted) {
        frame([&] { values_.Message = trimmed(mid(Claim, kReversalMessage)).toString(); });
        values_.Reference = shared(kReferenceReversed);
        values_.PAID = 0;
        values_.PaidStatus = shared(kWordSuccess);
    } else if (status == kStatusRejected) {
        // The descriptions stay whole here, and a reject 83 means nothing special.
        readFixedRejects(frame, kReversalRejectCount, kReversalRejectCodesFrom, false);
        frame([&] { values_.Message = trimmed(mid(Claim, kReversalMessage)).toString(); });
        values_.Reference = shared(kReferenceReversalRejected);
        values_.PAID = 0;
        values_.SaveClaim = false;
        values_.PaidStatus = shared(kWordRejected);
    }
}

bool clsClaimResponse::readFixedRejects(Frame& frame, Span count, qsizetype codesFrom,
                                        bool cutDescriptions) {
    frame([&] { values_.RejectCount = conv::LongFromDouble(numericValue(mid(Claim, count))); });
    bool duplicate = false;
    for (qint32 i = 1; i <= values_.RejectCount; ++i) {
        QString code;
        frame([&] {
            code = mid(Claim, codesFrom + kRejectCodeLength * i, kRejectCodeLength).toString();
        });
        addReject(frame, code, cutDescriptions);
        duplicate = duplicate || code == kDuplicateReject;
    }
    return duplicate;
}

void clsClaimResponse::setRejected(bool duplicate) {
    if (duplicate) {
        values_.PaidStatus = shared(kWordDuplicate);
        values_.SaveClaim = false;
        values_.PAID = 1;
    } else {
        values_.PaidStatus = shared(kWordRejected);
        values_.PAID = 0;
    }
}

void clsClaimResponse::addReject(Frame& frame, const QString& code, bool cutDescription) {
    QString description;
    frame([&] { description = describeReject(code, cutDescription); });
    frame([&] { colReject()->Add(code, description); });
}

QString clsClaimResponse::describeReject(const QString& code, bool cutDescription) const {
    const std::optional<QString> description = rejectTable_->descriptionOf(code);
    if (!description) return {};
    return cutDescription ? description->left(kDescriptionLength) : *description;
}

// ---- Format "51" ----------------------------------------------------------------------

void clsClaimResponse::decode51Claim(Frame& frame) {
    const FieldReader fields(Claim);
    frame([&] { values_.Message = fields.text(kFieldMessage); });
    frame([&] { values_.MessageTwo = fields.text(kFieldAdditionalMessage); });
    appendPhone(frame, fields);
    frame([&] { values_.PrescriptionRefNumber = fields.text(kFieldPrescriptionRef); });
    frame([&] {
        values_.PreferredProductCount = numericValue(fields.value(kFieldPreferredProductCount));
    });
    frame(
        [&] { values_.PreferredProductID = numericValue(fields.value(kFieldPreferredProductID)); });
    frame([&] {
        const FieldReader segments = durSegments51(fields);
        Parse51DUR(durSegment51(segments));
    });
    const QStringView status = status51(fields);
    const auto paid = std::find_if(kPaidWords.begin(), kPaidWords.end(),
                                   [&](const PaidWord& word) { return status == word.status; });
    if (paid != kPaidWords.end()) {
        values_.PaidStatus = shared(paid->word);
        values_.PAID = 1;
        for (const PaidField& field : kPaidFields51) {
            frame([&] { readPaidField51(fields, field); });
        }
        values_.Total = values_.TotalPaid + values_.Copay;
    } else if (status == kStatusRejected) {
        const bool duplicate = read51Rejects(frame, fields);
        frame([&] { values_.Message = fields.text(kFieldAdditionalMessage); });
        setRejected(duplicate);
    }
}

void clsClaimResponse::readPaidField51(const FieldReader& fields, const PaidField& field) {
    const QStringView value = fields.value(field.code);
    switch (field.decoding) {
        case Decoding::Text:
            values_.*field.text = value.toString();
            break;
        case Decoding::OverPunch:
            values_.*field.amount = overPunched(value);
            break;
        case Decoding::Number:
            values_.*field.amount = numericValue(value);
            break;
    }
}

void clsClaimResponse::decode51Reversal(Frame& frame) {
    Reversal = true;
    const FieldReader fields(Claim);
    const QStringView status = status51(fields);
    if (status == kStatusAccepted) {
        values_.PaidStatus = shared(kWordSuccess);
        frame([&] { values_.PrescriptionRefNumber = fields.text(kFieldPrescriptionRef); });
        frame([&] { values_.Message = fields.text(kFieldAdditionalMessage); });
        values_.Reference = shared(kReferenceReversed);
        values_.PAID = 0;
    } else if (status == kStatusDuplicate) {
        values_.PaidStatus = shared(kWordDuplicate);
    } else if (status == kStatusCaptured) {
        values_.PaidStatus = shared(kWordCaptured);
    } else if (status == kStatusRejected) {
        read51Rejects(frame, fields);
        values_.Reference = shared(kReferenceReversalRejected);
        values_.PAID = 0;
        values_.SaveClaim = false;
        values_.PaidStatus = shared(kWordRejected);
    }
}

// The payer's telephone number goes behind the second message. It runs to the next field,
// or else to two characters before the end of the text.
void clsClaimResponse::appendPhone(Frame& frame, const FieldReader& fields) {
    frame([&] {
        const qsizetype at = fields.find(kFieldPhone);
        if (at == 0) return;
        const qsizetype next = fields.separatorAfter(at);
        const qsizetype length =
            next > 0 ? next - (at + kValueOffset) : (Claim.size() - 1) - (at + kValueOffset);
        const QStringView phone = mid(Claim, at + kValueOffset, length);
        values_.MessageTwo.append(kPhonePrefix).append(phone);
    });
}

// The status letter stands behind the status field; without one, the letter read is
// the third character of the text.
QStringView clsClaimResponse::status51(const FieldReader& fields) const {
    return mid(Claim, fields.find(kFieldStatus) + kValueOffset, 1);
}

// The segments of the text, read from the first DUR segment on: the search by segment
// separator only has to look from the first DUR segment code on, which the field reader has
// already found (a text past GetField's reach is searched whole, so its reports stay what
// they are).
FieldReader clsClaimResponse::durSegments51(const FieldReader& fields) const {
    qsizetype from = 1;
    if (FieldReader::withinReach(Claim)) {
        const QLatin1StringView fieldCode = kDurSegmentCode.sliced(1);
        qsizetype at = fields.find(fieldCode);
        while (at > 0 && (at == 1 || Claim[at - 2] != QChar(mdlMain::kSegmentSeparator))) {
            at = fields.find(fieldCode, at + 1);
        }
        from = at > 0 ? at - 1 : Claim.size() + 1;
    }
    return FieldReader(QStringView(Claim).sliced(from - 1), {}, mdlMain::kSegmentSeparator);
}

// The DUR segment, from its first field on; a view into the text or into the reader.
QStringView clsClaimResponse::durSegment51(const FieldReader& segments) {
    QStringView segment = segments.value(kDurSegmentCode);
    if (segment.size() > kDurSegmentSkip) segment = segment.sliced(kDurSegmentSkip);
    return segment;
}

bool clsClaimResponse::read51Rejects(Frame& frame, const FieldReader& fields) {
    qsizetype at = 0;
    frame([&] {
        at = fields.find(kFieldRejectCount);
        if (at > 0) {
            values_.RejectCount = conv::LongFromDouble(
                numericValue(mid(Claim, at + kValueOffset, kRejectCount51Length)));
        }
    });
    frame([&] { at = fields.find(kFieldRejectCode); });
    bool duplicate = false;
    for (qint32 i = 1; i <= values_.RejectCount; ++i) {
        if (i > 1) frame([&] { at = fields.find(kFieldRejectCode, at + kValueOffset); });
        // A count larger than the codes sent lists the codes sent, and no more.
        if (at == 0) break;
        QString code;
        frame([&] { code = trimmed(mid(Claim, at + kValueOffset, kRejectCodeLength)).toString(); });
        addReject(frame, code, true);
        duplicate = duplicate || code == kDuplicateReject;
    }
    return duplicate;
}

}  // namespace tvrx
