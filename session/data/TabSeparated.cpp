#include "session/data/TabSeparated.h"

namespace tvrx {

TabSeparated parseTabSeparated(const QString& text) {
    TabSeparated result;
    QString unified = text;
    unified.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    const QStringList lines = unified.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].isEmpty()) continue;
        QStringList fields = lines[i].split(QLatin1Char('\t'));
        if (result.columns.isEmpty()) {
            result.columns = fields;
        } else if (fields.size() != result.columns.size()) {
            result.error = QStringLiteral("line %1: %2 fields, the header has %3")
                               .arg(i + 1)
                               .arg(fields.size())
                               .arg(result.columns.size());
            return result;
        } else {
            result.rows.push_back(std::move(fields));
        }
    }
    if (result.columns.isEmpty()) result.error = QStringLiteral("no header row");
    return result;
}

}  // namespace tvrx
