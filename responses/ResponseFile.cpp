#include "responses/ResponseFile.h"

#include "responses/TextPositions.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/text/Encodings.h"

#include <QFile>
#include <QFileInfo>

namespace tvrx::response {

QString readWholeFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QFileInfo::exists(path) ? err::PathFileAccessError : err::FileNotFound);
    }
    return QString::fromLatin1(file.readAll());
}

ResponseFile::ResponseFile(QString text)
    : text_(std::move(text)), format51_(mid(text_, kVersion) == kVersion51) {}

QString ResponseFile::formCode() const {
    return mid(text_, kVersion).toString();
}

FileRoute ResponseFile::route() const {
    const QStringView code = mid(text_, kTransactionCode);
    // A reversal code takes the reversal steps whatever the version says.
    if (code == kReversalCodeFixed || code == kReversalCode51) return FileRoute::Reversal;
    return format51_ ? FileRoute::Claims51 : FileRoute::FixedClaims;
}

QStringView ResponseFile::groupText() const {
    return format51_ ? QStringView(text_).mid(1) : QStringView(text_);
}

qsizetype ResponseFile::trailerLength() const {
    return format51_ ? kTrailerLength51 : kFixedTrailerLength;
}

qint16 ResponseFile::claimCount() const {
    const QStringView count = format51_ ? mid(groupText(), kCount51) : mid(text_, kFixedClaimCount);
    // Two characters at the most: the value always fits.
    return static_cast<qint16>(numericValue(count));
}

qsizetype ResponseFile::firstSeparator() const {
    return find(groupText(), mdlMain::kGroupSeparator);
}

QStringView ResponseFile::header() const {
    const qsizetype separator = firstSeparator();
    return separator == 0 ? QStringView() : groupText().first(separator - 1);
}

bool ResponseFile::headerRejected() const {
    return mid(header(), format51_ ? kFileStatus51 : kFixedFileStatus) == kHeaderRejected;
}

QString ResponseFile::responseHeader() const {
    QString built = text_.left(kKeptPrefixLength);
    if (!format51_) return built + (headerRejected() ? kFixedHeaderRejected : kFixedHeaderAccepted);
    built += mid(text_, kTransactionCode);
    built += headerRejected() ? kHeaderRejected : kHeaderAccepted51;
    const QStringView head = header();
    const qsizetype message = find(head, kHeaderMessage);
    if (message > 0) {
        built += kHeaderMessage;
        built += head.sliced(message - 1 + kHeaderMessage.size());
    }
    return built;
}

GroupCutter::GroupCutter(const ResponseFile& file)
    : text_(file.groupText()),
      trimmedLength_(trimmed(text_).size()),
      trailerLength_(file.trailerLength()),
      start_(file.firstSeparator()) {}

std::optional<QString> GroupCutter::next(Frame& frame, int index, int count) {
    if (start_ != 0 && index == count) {
        // The trimmed length counts with positions of the untrimmed text.
        frame([&] {
            group_ = mid(text_, start_, trimmedLength_ - start_ + 1 - trailerLength_).toString();
        });
    } else if (start_ != 0) {
        const qsizetype next = find(text_, mdlMain::kGroupSeparator, start_ + 1);
        if (next > 0) group_ = mid(text_, start_, next - start_).toString();
        start_ = next;
    }
    if (start_ == 0) return std::nullopt;
    return group_;
}

}  // namespace tvrx::response
