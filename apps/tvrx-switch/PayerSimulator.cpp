#include "PayerSimulator.h"

#include "Eligibility.h"
#include "RequestReader.h"
#include "ResponseWriter.h"
#include "responses/RejectTable.h"
#include "session/data/Connections.h"
#include "session/runtime/Failure.h"

#include <QDate>

namespace tvrx::sw {

namespace {

// "51 claim: P, R 75 79" for the log.
QString noteOf(const Transmission& transmission, const Answer& answer) {
    QStringList outcomes;
    for (const Outcome& outcome : answer.outcomes) {
        outcomes.append(
            QStringList{QString(outcome.status), outcome.rejects.join(u' ')}.join(u' ').trimmed());
    }
    return QStringLiteral("%1 %2%3: %4")
        .arg(transmission.family == Family::Segmented
                 ? QStringLiteral("51")
                 : (transmission.version.isEmpty() ? QStringLiteral("?") : transmission.version),
             transmission.reversal ? QStringLiteral("reversal") : QStringLiteral("claim"),
             answer.headerRejected ? QStringLiteral(", header rejected") : QString(),
             outcomes.join(QStringLiteral(", ")));
}

}  // namespace

PayerSimulator::PayerSimulator(std::shared_ptr<const RejectTable> rejects,
                               std::unique_ptr<History> history)
    : rejects_(std::move(rejects)), history_(std::move(history)) {}

PayerSimulator::~PayerSimulator() = default;

std::unique_ptr<PayerSimulator> PayerSimulator::start(const QString& payerFile,
                                                      const QString& historyPath,
                                                      QString& problem) {
    std::shared_ptr<const RejectTable> rejects;
    try {
        if (mdlMain::ConnectLookup()) rejects = RejectTable::forLookupConnection();
    } catch (const Failure& failure) {
        problem = QStringLiteral("cannot read the reject codes: ") + failure.description();
        return nullptr;
    }
    if (!rejects || rejects->empty()) {
        problem = QStringLiteral("cannot read the reject codes of the lookup database");
        return nullptr;
    }
    const auto known = [rejects](const QString& code) {
        return rejects->descriptionOf(code).has_value();
    };
    PayerFileResult payers = loadPayerFile(payerFile, known);
    if (!payers.payers) {
        problem = payers.problem;
        return nullptr;
    }
    std::unique_ptr<History> history = History::open(historyPath, problem);
    if (!history) return nullptr;
    std::unique_ptr<PayerSimulator> simulator(new PayerSimulator(rejects, std::move(history)));
    simulator->plans_ = payers.payers->plans.size();
    simulator->adjudicator_ = std::make_unique<Adjudicator>(
        std::move(*payers.payers), *simulator->history_, [rejects](const QString& code) {
            return rejects->descriptionOf(code).value_or(QString());
        });
    return simulator;
}

Switch::Reply PayerSimulator::answer(const QByteArray& request) {
    if (isEligibilityRequest(request)) return answerEligibility(request, adjudicator_->payers());
    const Transmission transmission = readRequest(QString::fromLatin1(request));
    const Answer answer =
        adjudicator_->adjudicate(transmission, day_.isValid() ? day_ : QDate::currentDate());
    return {writeResponse(transmission, answer).toLatin1(), noteOf(transmission, answer)};
}

}  // namespace tvrx::sw
