#pragma once

#include <QHash>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <memory>
#include <optional>

namespace tvrx {

// The reject codes of the lookup database with their descriptions. A decoding looks up
// every reject code of a response; the rows are read once over a lookup connection and
// kept in memory for as long as that connection stays open, instead of a query per code.
class RejectTable {
public:
    // The rows for the session's lookup connection: the kept ones while that connection
    // is the one they were read over and has stayed open since, otherwise read now. An empty
    // read is returned but not kept; a failed read fails as the database failed, and a
    // missing lookup connection as an object not set (91).
    static std::shared_ptr<const RejectTable> forLookupConnection();
    // Drops the kept rows if the lookup connection has been closed since they were read,
    // so that whatever opens it again reads the table anew.
    static void noteLookupState();

    bool empty() const { return rows_ == 0; }
    qsizetype size() const { return rows_; }

    // The description of the first row whose code equals `code` the way the lookup
    // database compares texts (letter case and trailing blanks ignored), none when no row
    // has it. A row whose description is null fails as an invalid use of null (94).
    std::optional<QString> descriptionOf(QStringView code) const;

private:
    static std::shared_ptr<const RejectTable> read();

    // Code in compared form -> description of the first row with it (null kept as null).
    QHash<QString, QVariant> byCode_;
    qsizetype rows_ = 0;
};

}  // namespace tvrx
