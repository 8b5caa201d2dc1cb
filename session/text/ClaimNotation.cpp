#include "session/text/ClaimNotation.h"

#include <array>

namespace tvrx {
namespace {

struct NamedByte {
    char16_t byte;
    QLatin1StringView name;
};

// The control bytes of a claim text that are written by name.
constexpr std::array<NamedByte, 8> kNamedBytes{{
    {0, QLatin1StringView("NUL")},
    {2, QLatin1StringView("STX")},
    {3, QLatin1StringView("ETX")},
    {10, QLatin1StringView("LF")},
    {13, QLatin1StringView("CR")},
    {28, QLatin1StringView("FS")},
    {29, QLatin1StringView("GS")},
    {30, QLatin1StringView("RS")},
}};

constexpr char16_t kTagOpen = u'<';
constexpr char16_t kTagClose = u'>';
constexpr char16_t kHexMark = u'x';

const NamedByte* namedByte(char16_t byte) {
    for (const NamedByte& entry : kNamedBytes) {
        if (entry.byte == byte) return &entry;
    }
    return nullptr;
}

bool writtenInHex(char16_t byte) {
    return byte < 32 || (byte >= 127 && byte <= 255) || byte == kTagOpen;
}

QChar hexDigit(int value) {
    return QChar(u"0123456789ABCDEF"[value & 15]);
}

int hexValue(QChar digit) {
    const char16_t c = digit.unicode();
    if (c >= u'0' && c <= u'9') return c - u'0';
    if (c >= u'A' && c <= u'F') return c - u'A' + 10;
    if (c >= u'a' && c <= u'f') return c - u'a' + 10;
    return -1;
}

NotationResult notationError(const QString& problem, qsizetype index) {
    return {std::nullopt, QStringLiteral("position %1: %2").arg(index + 1).arg(problem)};
}

// The byte a tag (the text between "<" and ">") stands for; an error names the tag.
NotationResult readTag(QStringView tag, qsizetype index) {
    for (const NamedByte& entry : kNamedBytes) {
        if (tag == entry.name) return {QString(QChar(entry.byte)), {}};
    }
    const QString shown = u'<' + tag.toString() + u'>';
    if (tag.size() == 3 && tag.front() == kHexMark) {
        const int high = hexValue(tag[1]);
        const int low = hexValue(tag[2]);
        if (high < 0 || low < 0) {
            return notationError(shown + QStringLiteral(" is not two hexadecimal digits"), index);
        }
        return {QString(QChar(high * 16 + low)), {}};
    }
    return notationError(QStringLiteral("unknown tag ") + shown, index);
}

}  // namespace

QString toNotation(QStringView claimText) {
    QString out;
    out.reserve(claimText.size());
    for (const QChar character : claimText) {
        const char16_t byte = character.unicode();
        if (const NamedByte* named = namedByte(byte)) {
            out += kTagOpen;
            out += named->name;
            out += kTagClose;
        } else if (writtenInHex(byte)) {
            out += kTagOpen;
            out += kHexMark;
            out += hexDigit(byte >> 4);
            out += hexDigit(byte);
            out += kTagClose;
        } else {
            out += character;
        }
    }
    return out;
}

NotationResult fromNotation(QStringView notation) {
    QString out;
    out.reserve(notation.size());
    qsizetype index = 0;
    while (index < notation.size()) {
        const qsizetype open = notation.indexOf(kTagOpen, index);
        if (open < 0) {
            out += notation.sliced(index);
            break;
        }
        out += notation.sliced(index, open - index);
        const qsizetype close = notation.indexOf(kTagClose, open + 1);
        const qsizetype nextOpen = notation.indexOf(kTagOpen, open + 1);
        if (close < 0 || (nextOpen >= 0 && nextOpen < close)) {
            return notationError(QStringLiteral("\"<\" without its \">\" (a literal \"<\" is "
                                                "written <x3C>)"),
                                 open);
        }
        const NotationResult byte = readTag(notation.sliced(open + 1, close - open - 1), open);
        if (!byte) return byte;
        out += *byte.text;
        index = close + 1;
    }
    return {out, {}};
}

}  // namespace tvrx
