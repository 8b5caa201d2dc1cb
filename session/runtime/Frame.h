#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace tvrx {

// What a frame does with a failure of a given number, other than the standard report.
enum class OnFailure {
    Report,            // report with the label, carry on with the next step (the standard)
    BoxAndLeave,       // show the method's box, run no further step, no report
    BoxAndContinue,    // show the method's box, carry on, no report
    LeaveSilently,     // run no further step, no report
    ContinueSilently,  // carry on, no report
};

// The failure frame every method that touches the database, a file or claim text runs
// its steps in. A step that fails is reported to the session's error reporter with the
// frame's fixed label, and the method carries on with its next step, so a method's
// result keeps whatever its steps had set. No exception gets past a frame.
//
//     Frame frame("clsDoc:GetData");
//     frame([&] { rs = openQuery(...); });
//     frame([&] { LastName = rs.text("LastName"); });
class Frame {
public:
    // The label is kept as given and turned into text only when a failure is reported,
    // so a frame costs next to nothing on the paths that decode claims by the thousand.
    explicit Frame(const char* label) noexcept : literalLabel_(label) {}
    explicit Frame(QString label) : label_(std::move(label)) {}

    // A number that takes its own path instead of the standard report.
    Frame& on(long number, OnFailure handling, std::function<void()> box = {});
    // Text for the report's details argument, built when a failure is reported.
    Frame& withDetails(std::function<QString()> details);

    // Runs one step unless the frame has left.
    template <class Step>
    void operator()(Step&& step) noexcept {
        if (left_) return;
        try {
            std::forward<Step>(step)();
        } catch (...) {
            handleCurrentFailure();
        }
    }

    // True once a failure has ended the method early; the method returns its result.
    bool left() const { return left_; }
    int failures() const { return failures_; }
    long lastNumber() const { return lastNumber_; }
    QString label() const;

private:
    struct Special {
        long number;
        OnFailure handling;
        std::function<void()> box;
    };

    void handleCurrentFailure() noexcept;
    void handle(long number, const QString& description, const QString& source, qint32 line,
                const QString& statement) noexcept;

    const char* literalLabel_ = nullptr;
    QString label_;
    std::vector<Special> specials_;
    std::function<QString()> details_;
    bool left_ = false;
    int failures_ = 0;
    long lastNumber_ = 0;
};

// Sends one report with the standard flags to the session's reporter; the statement of a
// database failure is offered to it as reportedStatement() meanwhile.
void reportFailure(const QString& description, long number, const QString& source, qint32 line,
                   const QString& location, const QString& details = {},
                   const QString& statement = {}) noexcept;

}  // namespace tvrx
