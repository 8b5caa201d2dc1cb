#include "session/data/DatabaseProduct.h"

#include <QSqlError>

namespace tvrx {

QString databaseText(const QSqlError& error) {
    QString text = error.databaseText().trimmed();
    if (text.isEmpty()) text = error.driverText().trimmed();
    const QString suffix = QStringLiteral("(%1)").arg(error.nativeErrorCode());
    if (text.endsWith(suffix)) text.chop(suffix.size());
    return text.trimmed();
}

}  // namespace tvrx
