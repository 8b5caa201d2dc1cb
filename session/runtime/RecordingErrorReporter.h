#pragma once

#include "session/runtime/ErrorReporter.h"

#include <QList>
#include <QPair>
#include <QString>

namespace tvrx {

struct ErrorReport {
    QString description;
    QString number;
    QString source;
    qint32 line = 0;
    QString location;
    QString details;
    bool flag1 = false;
    bool flag2 = false;
    bool flag3 = false;
    bool flag4 = false;
    QString statement;  // reportedStatement() during the report
};

// Keeps every report and every property assignment in order, for tests and for hosts
// that show the failures of one operation together.
class RecordingErrorReporter : public ErrorReporterBase {
public:
    void ReportError(const QString& description, const QString& number, const QString& source,
                     qint32 line, const QString& location, const QString& details, bool flag1,
                     bool flag2, bool flag3, bool flag4) override;

    void setStoreName(const QString& value) override;
    void setStorePhone(const QString& value) override;
    void setStoreEMail(const QString& value) override;
    void setReporterOption(bool value) override;
    void setVersion(const QString& value) override;
    void setProductName(const QString& value) override;
    void setApplicationPath(const QString& value) override;

    const QList<ErrorReport>& reports() const { return reports_; }
    // Property names in the order they were assigned, with the value as text.
    const QList<QPair<QString, QString>>& assignments() const { return assignments_; }
    QStringList locations() const;
    void clear();

private:
    QList<ErrorReport> reports_;
    QList<QPair<QString, QString>> assignments_;
};

}  // namespace tvrx
