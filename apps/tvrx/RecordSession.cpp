#include "RecordSession.h"

#include "common/CommandLine.h"

#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"

#include <QUrl>

#include <cstdio>

namespace tvrx::cli {

RecordSession::RecordSession(const CommandLine& line)
    : line_(line), reporter_(std::make_shared<RecordingErrorReporter>()) {
    mdlMain::ErrorReporter = reporter_;
}

RecordSession::~RecordSession() {
    mdlMain::resetSession();
}

std::shared_ptr<DbConnection> RecordSession::open() {
    auto connection = std::make_shared<DbConnection>();
    Frame frame("tvrx:Open");
    frame([&] {
        connection->setConnectionString(line_.database());
        connection->Open();
    });
    if (connection->State() == 1) return connection;
    const QList<ErrorReport>& all = reports();
    line_.failed(QStringLiteral("cannot open the database %1: %2")
                     .arg(shownDatabase(line_.database()),
                          all.isEmpty() ? QString() : all.last().description.simplified()));
    printed_ = all.size();
    return nullptr;
}

int RecordSession::printReports() {
    const QList<ErrorReport>& all = reports();
    const auto count = static_cast<int>(all.size() - printed_);
    for (; printed_ < all.size(); ++printed_) {
        const ErrorReport& report = all.at(printed_);
        std::fprintf(stderr, "%s: %s: error %s: %s\n", qPrintable(line_.invocation()),
                     qPrintable(report.location), qPrintable(report.number),
                     qPrintable(report.description.simplified()));
    }
    return count;
}

QString shownText(const QVariant& value) {
    return columns::textOf(value);
}

QString shownDatabase(const QString& database) {
    const QUrl url(database);
    return url.scheme().isEmpty() ? database : url.toDisplayString(QUrl::RemovePassword);
}

QString notAKey(const QString& text) {
    return QStringLiteral("the key '%1' is not a whole number").arg(text);
}

}  // namespace tvrx::cli
