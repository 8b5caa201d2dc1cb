#include "fuzz/targets/FuzzSession.h"
#include "fuzz/targets/FuzzTargets.h"
#include "session/text/ClaimNotation.h"
#include "session/text/Encodings.h"

#include <QString>
#include <QStringView>

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <optional>

namespace tvrx::fuzz {
namespace {

// One input, read as a claim text (Latin-1). Split at its first three line feeds it gives
// a field code, a separator, a scan text and, from the remainder, a fallback scan text;
// parts that are missing are empty, so the defaults of GetField come into play. The first
// two bytes are also a width for FixedLength (signed, little-endian) and the last eight a
// double for OverPunchReturn, so that negative widths, NaN and infinities come up.
struct EncodingsInput {
    QString whole;
    QString code;
    QString separator;
    QString scan;
    QString fallback;
    qint16 width = 0;
    double amount = 0;
    // How far the scan text is pushed back to reach the 16-bit limits of GetField; 0 for
    // half of the inputs, because scanning past 32767 characters is most of the cost of an
    // input.
    qsizetype padding = 0;
};

EncodingsInput readInput(const std::uint8_t* data, std::size_t size) {
    EncodingsInput in;
    in.whole = QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size));
    QStringView rest(in.whole);
    for (QString* part : {&in.code, &in.separator, &in.scan}) {
        const qsizetype lineFeed = rest.indexOf(u'\n');
        *part = (lineFeed < 0 ? rest : rest.first(lineFeed)).toString();
        rest = lineFeed < 0 ? QStringView() : rest.sliced(lineFeed + 1);
    }
    in.fallback = rest.toString();
    if (size >= 2) in.width = static_cast<qint16>(data[0] | (data[1] << 8));
    if (size >= sizeof(double))
        std::memcpy(&in.amount, data + size - sizeof(double), sizeof(double));
    constexpr qsizetype kNearTheLimit = 32760;
    if (size > 0 && (data[0] & 1) != 0) in.padding = kNearTheLimit + (data[0] >> 1) % 16;
    return in;
}

// Every report since the last call came from the frame with this label; forgets them.
qsizetype takeReports(FuzzSession& session, const char* label) {
    const auto& reports = session.reporter().reports();
    for (const ErrorReport& report : reports) {
        check(report.location == QLatin1String(label), "a report carries its function's label");
    }
    const qsizetype count = reports.size();
    session.reporter().clear();
    return count;
}

bool allDigits(QStringView text) {
    for (const QChar c : text) {
        if (c < u'0' || c > u'9') return false;
    }
    return true;
}

void fuzzNotation(const QString& text) {
    const NotationResult back = fromNotation(toNotation(text));
    check(back && *back.text == text, "notation: decode(encode(x)) == x");
    const NotationResult read = fromNotation(text);
    check(read.text.has_value() == read.error.isEmpty(), "notation: a text or an error");
    if (read) {
        const NotationResult again = fromNotation(toNotation(*read.text));
        check(again && *again.text == *read.text, "notation: read, written and read again");
    }
}

void fuzzFixedLength(FuzzSession& session, const EncodingsInput& in) {
    QString text = in.whole;
    const QString result = mdlMain::FixedLength(text, in.width, in.separator);
    const bool fails = in.width < 0 || (text.size() < in.width && in.separator.isEmpty());
    const qsizetype reports = takeReports(session, "mdlMain:FixedLength");
    check(text == in.whole, "FixedLength: the text stays as it is");
    if (fails) {
        check(result.isEmpty() && reports == 1, "FixedLength: one report, empty result");
    } else {
        check(result.size() == in.width && reports == 0, "FixedLength: exactly width characters");
    }
}

void fuzzOverPunchReturn(FuzzSession& session, double amount) {
    const QString punched = mdlMain::OverPunchReturn(amount);
    takeReports(session, "mdlMain:OverPunchReturn");
    if (punched.isEmpty()) return;
    check(punched.size() >= 8, "OverPunchReturn: at least eight characters");
    check(allDigits(QStringView(punched).chopped(1)), "OverPunchReturn: digits before the last");
    check(QStringView(u"{ABCDEFGHI}JKLMNOPQR").contains(punched.back()),
          "OverPunchReturn: the last character comes from the table");
}

// Decoding what was encoded gives back a whole amount the shortest text shows exactly.
void checkOverPunchRoundTrip(FuzzSession& session, double value) {
    const double whole = std::nearbyint(value * 100);
    if (!(std::fabs(whole) < 1e15)) return;
    double amount = whole;
    QString punched = mdlMain::OverPunchReturn(amount);
    const double decoded = mdlMain::OverPunch(punched);
    check(session.reporter().reports().isEmpty(), "over-punch round trip: no report");
    check(decoded == whole / 100, "over-punch round trip gives the amount back");
}

void fuzzOverPunch(FuzzSession& session, const EncodingsInput& in) {
    QString text = in.whole;
    const double value = mdlMain::OverPunch(text);
    takeReports(session, "mdlMain:OverPunch");
    check(std::isfinite(value), "OverPunch: a finite amount");
    check(text.size() == in.whole.size(), "OverPunch: the text keeps its length");
    if (!text.isEmpty()) {
        check(text.chopped(1) == in.whole.chopped(1), "OverPunch: only the last character changes");
        check(text.back() == in.whole.back() || allDigits(text.right(1)),
              "OverPunch: a rewritten last character is a digit");
    }
    fuzzOverPunchReturn(session, value * 100);
    fuzzOverPunchReturn(session, in.amount);
    checkOverPunchRoundTrip(session, value);
}

// GetField's results, checked against a plain search for separator + code.
void fuzzGetField(FuzzSession& session, const EncodingsInput& in, const QString& scanText) {
    QString separator = in.separator;
    QString scan = scanText;
    const std::optional<QString> value = mdlMain::GetField(in.code, in.fallback, separator, scan);
    const qsizetype reports = takeReports(session, "mdlMain:GetField");
    check(separator == (in.separator.isEmpty() ? QString(QChar(28)) : in.separator),
          "GetField: an empty separator becomes byte 28");
    check(scan == (scanText.isEmpty() ? in.fallback : scanText),
          "GetField: an empty scan text becomes the fallback");

    const qsizetype position = scan.indexOf(separator + in.code) + 1;
    if (position == 0) {
        check(!value && reports == 0, "GetField: no value for a code that is not there");
    } else if (position > std::numeric_limits<qint16>::max() - 3) {
        check(!value && reports > 0, "GetField: a value past 32767 is reported, not returned");
    } else if (value && reports == 0) {
        check(value->size() <= scan.size() - position, "GetField: the value lies in the scan");
        if (separator.size() == 1 && in.code.size() == 2) {
            check(scan.indexOf(separator + in.code + *value) + 1 == position,
                  "GetField: the value follows its code");
        }
    }
}

void fuzzCleaners(FuzzSession& session, const EncodingsInput& in) {
    QString text = in.whole;
    const QString phone = mdlMain::PhoneString(text);
    check(phone.size() <= 14, "PhoneString: at most the mask's 14 characters");
    if (text.startsWith(u'(')) check(phone.isEmpty() || phone.size() == 14, "PhoneString: mask");
    const QString zip = mdlMain::ZipString(text);
    check(zip.isEmpty() == text.isEmpty(), "ZipString: empty only for an empty text");
    check(zip.isEmpty() || zip.size() == 10, "ZipString: ten characters");
    if (text.size() >= 6) check(zip.at(5) == u'-', "ZipString: the hyphen in position 6");
    check(text == in.whole, "PhoneString and ZipString leave their text alone");
    check(session.reporter().reports().isEmpty(), "PhoneString and ZipString never fail");
}

}  // namespace

int fuzzEncodings(const std::uint8_t* data, std::size_t size) {
    FuzzSession session;
    const EncodingsInput in = readInput(data, size);
    fuzzNotation(in.whole);
    fuzzFixedLength(session, in);
    fuzzOverPunch(session, in);
    fuzzGetField(session, in, in.scan);
    if (in.padding > 0) fuzzGetField(session, in, QString(in.padding, u'x') + in.scan);
    fuzzCleaners(session, in);
    return 0;
}

}  // namespace tvrx::fuzz
