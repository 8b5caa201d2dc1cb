#pragma once

#include <QString>

namespace tvrx {

// Receives every unexpected failure. The operations and their argument order are the
// reporter's interface as the host knows it; the flags are always true, false, true, true.
class ErrorReporter {
public:
    virtual ~ErrorReporter() = default;

    virtual void ReportError(const QString& description, const QString& number,
                             const QString& source, qint32 line, const QString& location,
                             const QString& details, bool flag1, bool flag2, bool flag3,
                             bool flag4) = 0;

    virtual void setStoreName(const QString& value) = 0;
    virtual void setStorePhone(const QString& value) = 0;
    virtual void setStoreEMail(const QString& value) = 0;
    virtual void setReporterOption(bool value) = 0;
    virtual void setVersion(const QString& value) = 0;
    virtual void setProductName(const QString& value) = 0;
    virtual void setApplicationPath(const QString& value) = 0;
};

// The statement of the database failure whose report is being made, while a failure frame
// calls ReportError; empty for any other failure and outside a report. The interface's
// arguments are what the host sees and stay as they were; a reporter that keeps more (the
// error log's line) reads the statement from here.
QString reportedStatement();

// The store and application properties every reporter keeps, so that a concrete
// reporter only has to say what it does with a report.
class ErrorReporterBase : public ErrorReporter {
public:
    void setStoreName(const QString& value) override { storeName_ = value; }
    void setStorePhone(const QString& value) override { storePhone_ = value; }
    void setStoreEMail(const QString& value) override { storeEMail_ = value; }
    void setReporterOption(bool value) override { reporterOption_ = value; }
    void setVersion(const QString& value) override { version_ = value; }
    void setProductName(const QString& value) override { productName_ = value; }
    void setApplicationPath(const QString& value) override { applicationPath_ = value; }

    const QString& storeName() const { return storeName_; }
    const QString& storePhone() const { return storePhone_; }
    const QString& storeEMail() const { return storeEMail_; }
    bool reporterOption() const { return reporterOption_; }
    const QString& version() const { return version_; }
    const QString& productName() const { return productName_; }
    const QString& applicationPath() const { return applicationPath_; }

private:
    QString storeName_;
    QString storePhone_;
    QString storeEMail_;
    bool reporterOption_ = false;
    QString version_;
    QString productName_;
    QString applicationPath_;
};

}  // namespace tvrx
