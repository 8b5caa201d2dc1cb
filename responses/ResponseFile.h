#pragma once

#include "responses/ResponseLayout.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <optional>

namespace tvrx {

class Frame;

// A payer's response file as the transmission program leaves it: a transmission header,
// one group per claim (each opened by byte 29), then a short trailer. The file reader cuts
// it into the texts that the response objects decode: a claim's group behind a six-character
// header that the reader builds, or for a reversal the whole file.
namespace response {

// Which steps read the file: decided by its transaction code first, then by its version.
enum class FileRoute { FixedClaims, Claims51, Reversal };

// The first three characters of the file (start byte and version) open every response text.
inline constexpr qsizetype kKeptPrefixLength = 3;
// Fixed family: the count of claims, and the header status ("R": the payer rejected the
// whole transmission). The last group ends this many characters before the end of the
// trimmed file.
inline constexpr Span kFixedClaimCount{4, 2};
inline constexpr Span kFixedFileStatus{6, 1};
inline constexpr qsizetype kFixedTrailerLength = 2;
inline constexpr QLatin1StringView kFixedHeaderAccepted("000");
inline constexpr QLatin1StringView kFixedHeaderRejected("00R");
// Format "51", counted in the file without its start byte: the count of claims is one digit.
inline constexpr Span kCount51{5, 1};
inline constexpr Span kFileStatus51{6, 1};
inline constexpr qsizetype kTrailerLength51 = 1;
inline constexpr QLatin1StringView kHeaderAccepted51("0");
// A message of the transmission header, copied in front of every group of the file.
inline constexpr QLatin1StringView kHeaderMessage(
    "\x1c"
    "F4");

// The whole file, each byte one character. A file that is missing fails with 53, one that
// cannot be read with 75.
QString readWholeFile(const QString& path);

// The file's text and what its header says. Nothing here fails: a short or odd file gives
// empty parts, a count of 0 and no separator.
class ResponseFile {
public:
    explicit ResponseFile(QString text);

    // The whole file, as the reversal steps hand it on.
    const QString& text() const { return text_; }
    // Characters 2 and 3.
    QString formCode() const;
    FileRoute route() const;

    // The claim steps read the rest; in format "51" they read the file without its start
    // byte, the six characters they build still come from the whole file.
    qint16 claimCount() const;
    // Position of the first byte 29 in the text the groups are cut from; 0 when none.
    qsizetype firstSeparator() const;
    // Character 6 of the transmission header (the text before the first byte 29) is "R".
    bool headerRejected() const;
    // What the reader puts in front of each group.
    QString responseHeader() const;

private:
    friend class GroupCutter;
    QStringView groupText() const;
    QStringView header() const;
    qsizetype trailerLength() const;

    QString text_;
    bool format51_;
};

// Cuts the claim groups, one index after the other, as the reader walks them. For each
// index it takes the text from the current byte 29 up to the next one; the last index
// takes the rest up to the trailer. An index that is not the last is cut only when a
// further byte 29 follows: with fewer groups than the count, the last group present is
// skipped too, and so is every index after it. A cut that fails (the end of the trimmed file
// before the group's start) is reported in the reader's frame, and the index gets the
// group cut before it, as the reader's text stays what it was.
class GroupCutter {
public:
    explicit GroupCutter(const ResponseFile& file);

    // The group of index (1 to count), its leading byte 29 included; none when skipped.
    std::optional<QString> next(Frame& frame, int index, int count);

private:
    QStringView text_;
    qsizetype trimmedLength_;
    qsizetype trailerLength_;
    qsizetype start_;
    QString group_;
};

}  // namespace response
}  // namespace tvrx
