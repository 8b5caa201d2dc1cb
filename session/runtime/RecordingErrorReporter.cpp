#include "session/runtime/RecordingErrorReporter.h"

namespace tvrx {

void RecordingErrorReporter::ReportError(const QString& description, const QString& number,
                                         const QString& source, qint32 line,
                                         const QString& location, const QString& details,
                                         bool flag1, bool flag2, bool flag3, bool flag4) {
    reports_.append({description, number, source, line, location, details, flag1, flag2, flag3,
                     flag4, reportedStatement()});
}

void RecordingErrorReporter::setStoreName(const QString& value) {
    ErrorReporterBase::setStoreName(value);
    assignments_.append({QStringLiteral("StoreName"), value});
}

void RecordingErrorReporter::setStorePhone(const QString& value) {
    ErrorReporterBase::setStorePhone(value);
    assignments_.append({QStringLiteral("StorePhone"), value});
}

void RecordingErrorReporter::setStoreEMail(const QString& value) {
    ErrorReporterBase::setStoreEMail(value);
    assignments_.append({QStringLiteral("StoreEMail"), value});
}

void RecordingErrorReporter::setReporterOption(bool value) {
    ErrorReporterBase::setReporterOption(value);
    assignments_.append({QStringLiteral("ReporterOption"),
                         value ? QStringLiteral("True") : QStringLiteral("False")});
}

void RecordingErrorReporter::setVersion(const QString& value) {
    ErrorReporterBase::setVersion(value);
    assignments_.append({QStringLiteral("Version"), value});
}

void RecordingErrorReporter::setProductName(const QString& value) {
    ErrorReporterBase::setProductName(value);
    assignments_.append({QStringLiteral("ProductName"), value});
}

void RecordingErrorReporter::setApplicationPath(const QString& value) {
    ErrorReporterBase::setApplicationPath(value);
    assignments_.append({QStringLiteral("ApplicationPath"), value});
}

QStringList RecordingErrorReporter::locations() const {
    QStringList result;
    for (const auto& report : reports_) result.append(report.location);
    return result;
}

void RecordingErrorReporter::clear() {
    reports_.clear();
    assignments_.clear();
}

}  // namespace tvrx
