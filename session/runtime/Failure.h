#pragma once

#include <QString>

#include <exception>
#include <string>

namespace tvrx {

// A failed step: the number the host platform would have raised, its text and the
// component that raised it. Only the failure frame catches it; it never leaves a
// public method.
class Failure : public std::exception {
public:
    Failure(long number, QString description = {}, QString source = {}, qint32 line = 0);

    long number() const noexcept { return number_; }
    const QString& description() const noexcept { return description_; }
    const QString& source() const noexcept { return source_; }
    qint32 line() const noexcept { return line_; }
    // The statement a database failure came from, as the program wrote it (its values are
    // bound, never part of it); empty for any other failure.
    const QString& statement() const noexcept { return statement_; }
    void setStatement(QString statement) { statement_ = std::move(statement); }
    const char* what() const noexcept override { return what_.c_str(); }

    // The platform's own text for a number ("Overflow", "Type mismatch", ...).
    static QString standardDescription(long number);

private:
    long number_;
    QString description_;
    QString source_;
    qint32 line_;
    QString statement_;
    std::string what_;
};

// Raises the failure with the platform's text for the number.
[[noreturn]] void fail(long number);
[[noreturn]] void fail(long number, const QString& description, const QString& source = {});

}  // namespace tvrx
