#include "ui/QtErrorReporter.h"

#include "session/runtime/AppConfig.h"
#include "ui/ErrorScreen.h"

#include <QApplication>

namespace tvrx {

QtErrorReporter::QtErrorReporter(QString logPath) : FileErrorReporter(std::move(logPath)) {}

void QtErrorReporter::ReportError(const QString& description, const QString& number,
                                  const QString& source, qint32 line, const QString& location,
                                  const QString& details, bool flag1, bool flag2, bool flag3,
                                  bool flag4) {
    FileErrorReporter::ReportError(description, number, source, line, location, details, flag1,
                                   flag2, flag3, flag4);
    last_ = ErrorReport{description, number, source, line,  location,           details,
                        flag1,       flag2,  flag3,  flag4, reportedStatement()};
    if (!canShowScreen()) return;
    // A failure raised while the screen is open (a timer tick, say) is logged only:
    // one screen at a time.
    screenOpen_ = true;
    makeScreen(last_)->exec();
    screenOpen_ = false;
}

std::unique_ptr<ErrorScreen> QtErrorReporter::makeScreen(const ErrorReport& report) {
    const QString product = productName().isEmpty() ? appConfig().ProductName : productName();
    // The screen must not outlive this reporter: the modal call above ends before the
    // reporter does, and a caller of makeScreen owns both.
    return std::make_unique<ErrorScreen>(
        report, product, [this](const QString& comments) { appendComments(comments); }, parent_);
}

bool QtErrorReporter::canShowScreen() const {
    return showScreen_ && !screenOpen_ && qobject_cast<QApplication*>(QCoreApplication::instance());
}

}  // namespace tvrx
