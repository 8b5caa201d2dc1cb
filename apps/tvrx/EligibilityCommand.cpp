#include "Command.h"
#include "RecordSession.h"
#include "ShowKinds.h"
#include "WatchedTransmitFace.h"

#include "claims/frmTransmit.h"
#include "common/ExchangeDirectory.h"
#include "common/InputFile.h"
#include "records/PATINS.h"
#include "records/clsPatient.h"
#include "reports/ConsolePreviewFace.h"
#include "reports/LaidOutDocument.h"
#include "session/data/DbConnection.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

#include <cstdio>
#include <memory>

namespace tvrx::cli {

namespace {

const char* kDescription =
    "Asks the payer of the coverage PATINS-ID (PatInsID) whether its patient is covered on\n"
    "a day, through the exchange directory DIR, and shows the answer as the eligibility\n"
    "report: its text on standard output, or with --pdf FILE the report as a PDF file. The\n"
    "report's enabled buttons are then offered as a numbered choice, until Close: adding a\n"
    "plan the answer names to the pharmacy's plans (from the plan directory) or to the\n"
    "patient. --date answers the date question (M/D/YY, M/D/YYYY or YYYY-MM-DD); without it\n"
    "the question is asked. --answer and --answers answer the choices in order.\n"
    "Exit codes: 0 the report was shown, 1 no report (the reason is printed), 2 usage,\n"
    "            3 aborted while waiting.";

const QString kDirectory = QStringLiteral("dir");
const QString kDate = QStringLiteral("date");
const QString kPdf = QStringLiteral("pdf");
const QString kNabp = QStringLiteral("nabp");
const QString kAnswer = QStringLiteral("answer");
const QString kAnswers = QStringLiteral("answers");

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("PATINS-ID"), QStringLiteral("the coverage's PatInsID"));
    line.addOption(kDirectory, QStringLiteral("DIR"), QStringLiteral("the exchange directory"),
                   CommandLine::Presence::Required);
    line.addOption(kDate, QStringLiteral("MM/DD/YY"), QStringLiteral("the day of coverage"));
    line.addOption(kPdf, QStringLiteral("FILE"), QStringLiteral("write the report as a PDF file"));
    line.addOption(kNabp, QStringLiteral("N"),
                   QStringLiteral("the pharmacy's NABP number, for plans added"));
    line.addDatabaseOption();
    line.addOption(kAnswer, QStringLiteral("TEXT"), QStringLiteral("the next answer to a question"),
                   CommandLine::Presence::Repeatable);
    line.addOption(kAnswers, QStringLiteral("FILE"),
                   QStringLiteral("answers, one a line; '-' reads them from standard input"));
}

// The console's preview, remembering whether the report was shown.
class WatchedPreviewFace : public ConsolePreviewFace {
public:
    using ConsolePreviewFace::ConsolePreviewFace;

    void showModal(frmPrint& form) override {
        shown = true;
        ConsolePreviewFace::showModal(form);
    }

    bool shown = false;
};

// The date of the command line first, then those of --answer and --answers; the terminal
// after them.
std::shared_ptr<ConsoleUserInteraction> consoleUser(const CommandLine& line, QString& problem) {
    auto console = std::make_shared<ConsoleUserInteraction>();
    if (line.isSet(kDate)) console->addAnswer(line.value(kDate));
    for (const QString& answer : line.values(kAnswer)) console->addAnswer(answer);
    if (!line.isSet(kAnswers)) return console;
    const InputFile file = readInputFile(line.value(kAnswers));
    if (!file.bytes) {
        problem = file.error;
        return nullptr;
    }
    console->addAnswersFromText(QString::fromUtf8(*file.bytes));
    return console;
}

int run(const CommandLine& line) {
    const std::optional<qint32> key = line.key(0);
    if (!key) return line.usageError(notAKey(line.arguments().first()));
    if (line.isSet(kDate) && !conv::CoverageDate(line.value(kDate))) {
        return line.usageError(
            QStringLiteral("--date takes a day as M/D/YY, M/D/YYYY or YYYY-MM-DD"));
    }
    const QString directory = line.value(kDirectory);
    const QString unusable = exchangeDirectoryProblem(directory);
    if (!unusable.isEmpty()) return line.failed(unusable);
    QString problem;
    const auto console = consoleUser(line, problem);
    if (!console) return line.failed(problem);

    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    if (!rowExists(*connection, QStringLiteral("PATINS"), QStringLiteral("PatInsID"), *key,
                   "tvrx:eligibility")) {
        session.printReports();
        return line.failed(QStringLiteral("no coverage with PatInsID %1").arg(*key));
    }
    mdlMain::UserService = console;
    auto wait = std::make_shared<WatchedTransmitFace>();
    setTransmitFace(wait);
    if (line.isSet(kPdf))
        mdlMain::Documents.set([] { return std::make_shared<LaidOutDocument>(); });
    auto preview = std::make_shared<WatchedPreviewFace>(line.value(kPdf));
    setPreviewFace(preview);

    // The whole patient is loaded: attaching a plan writes the patient back.
    PATINS coverage;
    coverage.setConnection(connection);
    coverage.PatInsID = *key;
    coverage.GetData();
    clsPatient patient;
    patient.PatientID = coverage.PatientID;
    patient.GetData();
    const QString result =
        patient.CheckEligibility(coverage, directory, QString(), line.value(kNabp));

    int code = kExitOk;
    if (!result.isEmpty()) {
        std::printf("%s\n", qPrintable(result));
        code = kExitFailed;
    } else if (wait->shown && !wait->answered) {
        code = kExitAborted;
    } else if (!preview->shown) {
        const QString reason = patient.ErrorMessage();
        std::printf("No report%s\n",
                    reason.isEmpty() ? "." : qPrintable(QStringLiteral(": ") + reason));
        code = kExitFailed;
    }
    session.printReports();
    return code;
}

}  // namespace

Command eligibilityCommand() {
    return {QStringLiteral("eligibility"),
            QStringLiteral("ask a coverage's payer whether the patient is covered"),
            QString::fromLatin1(kDescription),
            declare,
            run,
            namesPdfFile};
}

}  // namespace tvrx::cli
