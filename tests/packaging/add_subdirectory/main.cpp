// Drives a record class as a host would, over an empty SQLite database: its read fails,
// and the failure is reported under the record's label, the statement beside it.
#include "records/clsDoc.h"
#include "session/data/DbConnection.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/Session.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <memory>

int main() {
    QTemporaryDir folder;
    auto reporter = std::make_shared<tvrx::RecordingErrorReporter>();
    tvrx::mdlMain::ErrorReporter = reporter;
    auto connection = std::make_shared<tvrx::DbConnection>(folder.filePath("empty.db"));
    connection->Open();

    tvrx::clsDoc doc;
    doc.setConnection(connection);
    doc.MDID = 1;
    doc.GetData();

    // The session's start reports the missing store first; then the record's read.
    const auto& reports = reporter->reports();
    const bool ok = std::any_of(reports.begin(), reports.end(), [](const auto& report) {
        return report.location == QStringLiteral("clsDoc:GetData") &&
               report.statement.contains(QStringLiteral("FROM PHYSIC"));
    });
    tvrx::mdlMain::resetSession();
    std::printf("add_subdirectory consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
