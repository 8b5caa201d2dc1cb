#include "session/runtime/Frame.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/ErrorReporter.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace tvrx {

namespace {

// The statement of the report in progress on this thread, if it has one.
thread_local const QString* statementOfReport = nullptr;

}  // namespace

QString reportedStatement() {
    return statementOfReport != nullptr ? *statementOfReport : QString();
}

QString Frame::label() const {
    return literalLabel_ != nullptr ? QString::fromLatin1(literalLabel_) : label_;
}

Frame& Frame::on(long number, OnFailure handling, std::function<void()> box) {
    specials_.push_back({number, handling, std::move(box)});
    return *this;
}

Frame& Frame::withDetails(std::function<QString()> details) {
    details_ = std::move(details);
    return *this;
}

void Frame::handleCurrentFailure() noexcept {
    try {
        throw;
    } catch (const Failure& failure) {
        handle(failure.number(), failure.description(), failure.source(), failure.line(),
               failure.statement());
    } catch (const std::bad_alloc&) {
        handle(err::OutOfMemory, Failure::standardDescription(err::OutOfMemory), {}, 0, {});
    } catch (const std::exception& other) {
        handle(err::InternalError, QString::fromLocal8Bit(other.what()), {}, 0, {});
    } catch (...) {
        handle(err::InternalError, Failure::standardDescription(err::InternalError), {}, 0, {});
    }
}

void Frame::handle(long number, const QString& description, const QString& source, qint32 line,
                   const QString& statement) noexcept {
    ++failures_;
    lastNumber_ = number;
    for (const auto& special : specials_) {
        if (special.number != number) continue;
        const bool showsBox = special.handling == OnFailure::BoxAndLeave ||
                              special.handling == OnFailure::BoxAndContinue;
        if (showsBox && special.box) {
            try {
                special.box();
            } catch (...) {
                // A box that cannot be shown must not turn into a second failure.
            }
        }
        switch (special.handling) {
            case OnFailure::BoxAndLeave:
            case OnFailure::LeaveSilently:
                left_ = true;
                return;
            case OnFailure::BoxAndContinue:
            case OnFailure::ContinueSilently:
                return;
            case OnFailure::Report:
                break;
        }
        break;
    }
    QString details;
    if (details_) {
        try {
            details = details_();
        } catch (...) {
            details.clear();
        }
    }
    reportFailure(description, number, source.isEmpty() ? QStringLiteral("TVRX1") : source, line,
                  label(), details, statement);
}

void reportFailure(const QString& description, long number, const QString& source, qint32 line,
                   const QString& location, const QString& details,
                   const QString& statement) noexcept {
    const QString* outer = std::exchange(statementOfReport, &statement);
    try {
        mdlMain::reporter().ReportError(description, QString::number(number), source, line,
                                        location, details, true, false, true, true);
    } catch (...) {
        // The reporter is the last resort; if it fails, say so on the console and go on.
        std::fprintf(stderr, "%s: %ld %s (the error report itself failed)\n", qPrintable(location),
                     number, qPrintable(description));
    }
    statementOfReport = outer;
}

}  // namespace tvrx
