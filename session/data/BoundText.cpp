#include "session/data/BoundText.h"

namespace tvrx {

QString doubledThenCut(const QString& text, int width) {
    const QString cut =
        QString(text).replace(QLatin1Char('\''), QStringLiteral("''")).left(qMax(width, 0));
    QString stored;
    stored.reserve(cut.size());
    for (qsizetype i = 0; i < cut.size(); ++i) {
        stored.append(cut.at(i));
        const bool doubledPair = cut.at(i) == QLatin1Char('\'') && i + 1 < cut.size() &&
                                 cut.at(i + 1) == QLatin1Char('\'');
        if (doubledPair) ++i;
    }
    return stored;
}

}  // namespace tvrx
