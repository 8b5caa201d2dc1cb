#pragma once

#include "Adjudicator.h"
#include "History.h"
#include "Switch.h"

#include <QDate>
#include <QString>

#include <memory>

namespace tvrx {
class RejectTable;
}

namespace tvrx::sw {

// The payers of a payer file answering requests: each request read (RequestReader.h),
// adjudicated against the plans and the history (Adjudicator.h), and answered with a
// response file (ResponseWriter.h).
class PayerSimulator {
public:
    // The simulator of the payer file with its history, or nothing with the problem: the
    // reject table cannot be read, the payer file is wrong, the history cannot be used.
    static std::unique_ptr<PayerSimulator> start(const QString& payerFile,
                                                 const QString& historyPath, QString& problem);
    ~PayerSimulator();

    Switch::Reply answer(const QByteArray& request);
    // The day the payers answer on, for the references they give; today unless set.
    void setDay(const QDate& day) { day_ = day; }
    qsizetype plans() const { return plans_; }

private:
    PayerSimulator(std::shared_ptr<const RejectTable> rejects, std::unique_ptr<History> history);

    std::shared_ptr<const RejectTable> rejects_;
    std::unique_ptr<History> history_;
    std::unique_ptr<Adjudicator> adjudicator_;
    qsizetype plans_ = 0;
    QDate day_;
};

}  // namespace tvrx::sw
