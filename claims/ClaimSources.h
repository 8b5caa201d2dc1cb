#pragma once

#include "session/runtime/UserInteraction.h"

#include <QDateTime>
#include <QLatin1StringView>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <optional>

namespace tvrx {
class Frame;
class RecordSet;
}  // namespace tvrx

// Small steps the claim builders share while they prepare values.
namespace tvrx::claims {

// A column of the row through ScreenForNull, as text: a null is the default, or the empty
// text. An unknown column or a record set at its end raises its failure.
QString columnText(const RecordSet& rs, const QString& name,
                   const std::optional<QVariant>& whenNull = std::nullopt);

// A column the claim takes as it stands: a null cannot be used and fails with 94.
QString requiredText(const RecordSet& rs, const QString& name);

// The `length` characters after the first occurrence of the tag (letter case as written),
// fewer at the end of the text; nothing when the tag is not there.
std::optional<QString> taggedValue(const QString& text, QLatin1StringView tag, qsizetype length);

// The ten digits of a telephone in its mask form "(555) 555-0199", taken by position:
// three from position 2, three from 7, four from 11. A shorter text gives fewer.
QString phoneDigits(const QString& masked);

// "1" for a male patient ("M"), "2" for anyone else.
QString genderCode(const QString& gender);

// The birth date as "YYYYMMDD"; "00000000" only for no date at all (the zero date is a
// date and goes out as one).
QString birthText(const QDateTime& birthdate);

// The text without any of the characters.
QString without(QString text, QStringView characters);

// Opens the plan row of the patient's other insurance (the coverage oPatInsID) into
// `row`. Without one the box "Other insurance not found." appears, unless silenced.
// Returns whether the row was found.
bool openOtherInsurance(Frame& frame, qint32 oPatInsID, RecordSet& row, bool silent = false);

// A box with an OK button; the title is the product name unless another is given.
void tellUser(const QString& text, Icon icon, const QString& title = {});

// A claim text is bytes: a character beyond 255 becomes "?", so that the Claims row, the
// file and the payer all see the same text.
QString claimBytes(QString text);

}  // namespace tvrx::claims
