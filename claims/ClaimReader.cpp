#include "claims/ClaimReader.h"

#include "claims/Layouts.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <QDate>

#include <vector>

namespace tvrx::claims {

namespace {

constexpr qsizetype kCodeLength = 2;
constexpr QLatin1StringView kSegmentCode("AM");
const QLatin1StringView kReversal51("B2");

bool isControl(QChar c) {
    const char16_t u = c.unicode();
    return u == mdlMain::kFieldSeparator || u == mdlMain::kGroupSeparator ||
           u == mdlMain::kSegmentSeparator || u == mdlMain::kEndOfText;
}

qsizetype nextControl(QStringView text, qsizetype from) {
    for (qsizetype i = from; i < text.size(); ++i) {
        if (isControl(text[i])) return i;
    }
    return text.size();
}

QVariant decode(const Field& field, QStringView value) {
    const QStringView rest =
        value.startsWith(field.constant) ? value.sliced(field.constant.size()) : value;
    switch (field.encoding) {
        case Encoding::None:
            return value.toString();
        case Encoding::Text:
            return rest.toString();
        case Encoding::Fill:
            return conv::RTrim(rest.toString());
        case Encoding::Digits:
            return conv::Val(rest.toString());
        case Encoding::Day: {
            const QDate day = QDate::fromString(rest.toString(), QStringLiteral("yyyyMMdd"));
            return day.isValid() ? QVariant(day) : QVariant();
        }
        case Encoding::Punched: {
            QString punched = rest.toString();
            return mdlMain::OverPunch(punched);
        }
    }
    return {};
}

// The identified fields a segment's codes are looked up in: its own and those of the runs
// after it, in the layout's order. The fields before any segment have an empty code.
struct Scope {
    QString segment;
    QString name;
    std::vector<const Field*> fields;
    std::size_t cursor = 0;

    // The next field with the code from where the last one was found, so that a code
    // that stands twice, or once per item, is named in order.
    const Field* take(QStringView code) {
        for (std::size_t step = 0; step < fields.size(); ++step) {
            const std::size_t at = (cursor + step) % fields.size();
            if (fields[at]->code == code) {
                cursor = at + 1;
                return fields[at];
            }
        }
        return nullptr;
    }
};

std::vector<Scope> scopesOf(const Layout& layout) {
    std::vector<Scope> scopes(1);
    for (const Part& part : layout.parts) {
        if (part.kind == Part::Kind::Head) continue;
        if (part.kind == Part::Kind::Segment) {
            scopes.push_back({QString(part.code), QString(part.name), {}, 0});
        }
        for (const Field& field : part.fields) scopes.back().fields.push_back(&field);
    }
    return scopes;
}

Scope* scopeOf(std::vector<Scope>& scopes, QStringView segment) {
    for (Scope& scope : scopes) {
        if (scope.segment == segment) return &scope;
    }
    return nullptr;
}

class LayoutReader {
public:
    LayoutReader(const Layout& layout, QStringView text)
        : layout_(layout), text_(text), scopes_(scopesOf(layout)) {}

    Reading read() {
        if (!layout_.parts.empty()) {
            const Part& first = layout_.parts.front();
            if (first.lead != 0) openWith(first.lead);
            if (first.kind == Part::Kind::Head) readHead(first);
        }
        while (pos_ < text_.size()) step();
        return reading_;
    }

private:
    void openWith(char16_t lead) {
        if (pos_ < text_.size() && text_[pos_] == lead) {
            ++pos_;
            return;
        }
        reading_.problems.append(
            QStringLiteral("The text does not open with byte %1.").arg(int(lead)));
    }

    void readHead(const Part& head) {
        const qsizetype end = nextControl(text_, pos_);
        const QStringView characters = text_.sliced(pos_, end - pos_);
        qsizetype nominal = 0;
        for (const Field& field : head.fields) nominal += field.nominalWidth();
        if (characters.size() != nominal) {
            reading_.problems.append(
                QStringLiteral("The fixed head is %1 characters long; the layout's head has %2, "
                               "so it is not cut into its items.")
                    .arg(characters.size())
                    .arg(nominal));
            reading_.fields.append({{}, {}, QString(head.name), characters.toString(), {}});
        } else {
            qsizetype at = 0;
            for (const Field& field : head.fields) {
                const QStringView value = characters.sliced(at, field.nominalWidth());
                reading_.fields.append(
                    {{}, {}, QString(field.name), value.toString(), decode(field, value)});
                at += field.nominalWidth();
            }
        }
        pos_ = end;
    }

    void step() {
        const char16_t c = text_[pos_].unicode();
        if (c == mdlMain::kFieldSeparator) {
            readField();
        } else if (c == mdlMain::kEndOfText) {
            pos_ = text_.size();
        } else if (c == mdlMain::kGroupSeparator || c == mdlMain::kSegmentSeparator) {
            if (c == mdlMain::kSegmentSeparator) segment_.clear();
            ++pos_;
        } else {
            const qsizetype end = nextControl(text_, pos_);
            reading_.problems.append(
                QStringLiteral("Characters outside any field at position %1: \"%2\".")
                    .arg(pos_ + 1)
                    .arg(text_.sliced(pos_, end - pos_).toString()));
            pos_ = end;
        }
    }

    void readField() {
        const qsizetype end = nextControl(text_, pos_ + 1);
        const QStringView body = text_.sliced(pos_ + 1, end - pos_ - 1);
        pos_ = end;
        const QStringView code = body.left(kCodeLength);
        const QStringView value = body.sliced(code.size());
        if (code == kSegmentCode && segment_.isEmpty()) {
            segment_ = kSegmentCode + value.toString();
            Scope* scope = scopeOf(scopes_, segment_);
            const QString name = scope != nullptr ? scope->name : QString();
            if (scope == nullptr) {
                reading_.problems.append(
                    QStringLiteral("Segment %1 is not part of this layout.").arg(segment_));
            }
            reading_.fields.append(
                {segment_, code.toString(), name, value.toString(), value.toString()});
            return;
        }
        Scope* scope = scopeOf(scopes_, segment_);
        const Field* field = scope != nullptr ? scope->take(code) : nullptr;
        if (field == nullptr) {
            reading_.problems.append(QStringLiteral("Field %1%2 is not part of this layout.")
                                         .arg(segment_.isEmpty() ? QString() : segment_ + u' ')
                                         .arg(code.toString()));
        }
        reading_.fields.append(
            {segment_, code.toString(), field != nullptr ? QString(field->name) : QString(),
             value.toString(), field != nullptr ? decode(*field, value) : QVariant()});
    }

    const Layout& layout_;
    QStringView text_;
    std::vector<Scope> scopes_;
    qsizetype pos_ = 0;
    QString segment_;
    Reading reading_;
};

QString formOf(const Layout& layout) {
    return QString(layout.name);
}

// The Form stands at positions 8 and 9 of a head; a 5.1 head has its transaction code at
// 10 and 11.
QString formInHead(QStringView text) {
    return text.mid(7, 2).toString();
}

}  // namespace

const ReadField* Reading::find(QStringView code, QStringView segment) const {
    for (const ReadField& field : fields) {
        if (field.code == code && (segment.isEmpty() || field.segment == segment)) return &field;
    }
    return nullptr;
}

Reading readLayout(const Layout& layout, QStringView text) {
    return LayoutReader(layout, text).read();
}

QList<Transaction> readTransmission(QStringView text, const QString& bodyForm) {
    QList<Transaction> transactions;
    const auto add = [&](const QString& title, const Layout& layout, QStringView part) {
        transactions.append({title, formOf(layout), readLayout(layout, part)});
    };
    const bool opensWithStart = text.startsWith(QChar(mdlMain::kStartOfText));
    const QString form = opensWithStart ? formInHead(text) : bodyForm;
    const qsizetype firstGroup = text.indexOf(QChar(mdlMain::kGroupSeparator));
    const bool reversal =
        opensWithStart &&
        (form == QLatin1String("51") ? text.mid(9, 2) == kReversal51 : firstGroup < 0);
    if (reversal) {
        add(QStringLiteral("Reversal"), reversalLayout(form), text);
        return transactions;
    }
    qsizetype at = 0;
    if (opensWithStart) {
        const qsizetype headerEnd = firstGroup < 0 ? text.size() : firstGroup;
        add(QStringLiteral("Header"), headerLayout(form), text.first(headerEnd));
        at = headerEnd;
    }
    int count = 0;
    while (at < text.size()) {
        qsizetype next = text.indexOf(QChar(mdlMain::kGroupSeparator), at + 1);
        if (next < 0) next = text.size();
        add(QStringLiteral("Claim %1").arg(++count), claimLayout(form), text.sliced(at, next - at));
        at = next;
    }
    return transactions;
}

}  // namespace tvrx::claims
