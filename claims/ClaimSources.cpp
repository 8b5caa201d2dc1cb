#include "claims/ClaimSources.h"

#include "claims/PlanRows.h"
#include "responses/TextPositions.h"
#include "session/data/ColumnTable.h"
#include "session/data/RecordSet.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <algorithm>

namespace tvrx::claims {

QString columnText(const RecordSet& rs, const QString& name,
                   const std::optional<QVariant>& whenNull) {
    return columns::textOf(mdlMain::ScreenForNull(rs.Fields(name), whenNull));
}

QString requiredText(const RecordSet& rs, const QString& name) {
    const QVariant field = rs.Fields(name);
    if (field.isNull()) fail(err::InvalidUseOfNull);
    return columns::textOf(field);
}

std::optional<QString> taggedValue(const QString& text, QLatin1StringView tag, qsizetype length) {
    const qsizetype at = text.indexOf(tag);
    if (at < 0) return std::nullopt;
    return text.mid(at + tag.size(), length);
}

QString phoneDigits(const QString& masked) {
    return response::mid(masked, 2, 3).toString() + response::mid(masked, 7, 3).toString() +
           response::mid(masked, 11, 4).toString();
}

QString genderCode(const QString& gender) {
    return gender == QLatin1String("M") ? QStringLiteral("1") : QStringLiteral("2");
}

QString birthText(const QDateTime& birthdate) {
    return birthdate.isValid() ? conv::FormatDate(birthdate, QStringLiteral("YYYYMMDD"))
                               : QStringLiteral("00000000");
}

QString without(QString text, QStringView characters) {
    for (const QChar c : characters) text.remove(c);
    return text;
}

bool openOtherInsurance(Frame& frame, qint32 oPatInsID, RecordSet& row, bool silent) {
    bool found = false;
    frame([&] {
        row = openPlanRow(oPatInsID);
        found = !row.Eof();
    });
    if (!found && !silent) tellUser(QStringLiteral("Other insurance not found."), Icon::Critical);
    return found;
}

void tellUser(const QString& text, Icon icon, const QString& title) {
    mdlMain::user().MsgBox(text, Buttons::OKOnly, icon, 1,
                           title.isEmpty() ? appConfig().ProductName : title);
}

// A character beyond the 16-bit range is two code units and still one "?".
QString claimBytes(QString text) {
    constexpr char16_t kLastByte = 255;
    const auto beyond = [](QChar c) { return c.unicode() > kLastByte; };
    if (std::none_of(text.cbegin(), text.cend(), beyond)) return text;
    QString bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool pair =
            c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair) ++i;
        bytes += beyond(c) ? QChar(u'?') : c;
    }
    return bytes;
}

}  // namespace tvrx::claims
