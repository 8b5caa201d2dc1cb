#include "responses/RejectTable.h"

#include "responses/ResponseLayout.h"
#include "session/data/DbConnection.h"
#include "session/data/RecordSet.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"

#include <algorithm>

namespace tvrx {
namespace {

// The rows kept for this thread's session and what they were read over.
struct KeptRows {
    std::weak_ptr<DbConnection> connection;
    QString connectionString;
    qint64 openings = 0;
    std::shared_ptr<const RejectTable> table;
};

thread_local KeptRows kept;

// A code as the lookup database compares it: trailing blanks and letter case do not count.
// Written over `form`, so that a caller can keep one buffer for every look-up; ASCII codes,
// as payers send them, are folded here, any other by Qt's case folding.
void writeComparedForm(QStringView code, QString& form) {
    qsizetype end = code.size();
    while (end > 0 && code[end - 1] == u' ') --end;
    const QStringView trimmedCode = code.first(end);
    if (!std::all_of(trimmedCode.begin(), trimmedCode.end(),
                     [](QChar c) { return c.unicode() < 128; })) {
        form = trimmedCode.toString().toCaseFolded();
        return;
    }
    form.resize(trimmedCode.size());
    std::transform(trimmedCode.begin(), trimmedCode.end(), form.begin(), [](QChar c) {
        return c >= u'A' && c <= u'Z' ? QChar(c.unicode() - u'A' + u'a') : c;
    });
}

QString comparedForm(QStringView code) {
    QString form;
    writeComparedForm(code, form);
    return form;
}

bool keptRowsServe(const std::shared_ptr<DbConnection>& connection) {
    return kept.table && kept.connection.lock() == connection && connection->State() == 1 &&
           kept.connectionString == connection->ConnectionString() &&
           kept.openings == connection->openings();
}

}  // namespace

std::shared_ptr<const RejectTable> RejectTable::forLookupConnection() {
    const std::shared_ptr<DbConnection> connection = mdlMain::LookupConnection;
    if (!connection) fail(err::ObjectVariableNotSet);
    if (keptRowsServe(connection)) return kept.table;
    kept = {};
    std::shared_ptr<const RejectTable> table = read();
    if (!table->empty())
        kept = {connection, connection->ConnectionString(), connection->openings(), table};
    return table;
}

void RejectTable::noteLookupState() {
    const std::shared_ptr<DbConnection> connection = mdlMain::LookupConnection;
    if (kept.table && !(connection && keptRowsServe(connection))) kept = {};
}

std::shared_ptr<const RejectTable> RejectTable::read() {
    auto table = std::make_shared<RejectTable>();
    RecordSet rows = mdlMain::LookupConnection->OpenRecordSet(QString(response::kRejectQuery));
    const QString codeColumn(response::kRejectCodeColumn);
    const QString descriptionColumn(response::kRejectDescriptionColumn);
    // Counted once: the end-of-data test counts the rows every time it is asked.
    const qint32 count = rows.RecordCount();
    for (qint32 row = 0; row < count; ++row) {
        const QVariant code = rows.Fields(codeColumn);
        // A null code equals nothing; of equal codes the first row counts.
        if (!code.isNull()) {
            const QString key = comparedForm(code.toString());
            if (!table->byCode_.contains(key)) {
                table->byCode_.insert(key, rows.Fields(descriptionColumn));
            }
        }
        ++table->rows_;
        rows.MoveNext();
    }
    return table;
}

std::optional<QString> RejectTable::descriptionOf(QStringView code) const {
    thread_local QString form;
    writeComparedForm(code, form);
    const auto row = byCode_.constFind(form);
    if (row == byCode_.cend()) return std::nullopt;
    if (row->isNull()) fail(err::InvalidUseOfNull);
    return row->toString();
}

}  // namespace tvrx
