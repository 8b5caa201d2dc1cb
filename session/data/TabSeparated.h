#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace tvrx {

// A tab-separated file of the database folder: a header row of column names, then one
// row per line. Fields are taken as they stand; there is no quoting.
struct TabSeparated {
    QStringList columns;
    std::vector<QStringList> rows;
    // Empty when the text was well formed; otherwise what was wrong, with its line.
    QString error;
};

// Reads the text; CR LF line ends count as LF, empty lines are skipped.
TabSeparated parseTabSeparated(const QString& text);

}  // namespace tvrx
