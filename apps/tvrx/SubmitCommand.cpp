#include "Command.h"
#include "JsonOutput.h"
#include "RecordSession.h"
#include "ShowKinds.h"
#include "TreePrinter.h"
#include "WatchedTransmitFace.h"

#include "claims/PlanRows.h"
#include "claims/Wrapper.h"
#include "common/ExchangeDirectory.h"
#include "prescription/clsPrescription.h"
#include "responses/PlainTree.h"
#include "responses/ResponseJson.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"

#include <QJsonArray>

#include <cstdio>
#include <memory>

namespace tvrx::cli {

namespace {

const char* kDescription =
    "Bills the fills RX-ID ... (RXInfoID) to their payer in one transmission through the\n"
    "exchange directory DIR, waits for the answer, and prints the result tree, each fill's\n"
    "status and what went wrong. The fills must share one coverage (PatInsID); a reversal\n"
    "takes one fill. When the first fill has a second payer the program asks which plan to\n"
    "bill; --main or --other answers. Ctrl-C aborts the wait.\n"
    "Exit codes: 0 answered and read (whatever the payer decided), 1 sent but not read,\n"
    "            2 usage, 3 aborted, 4 stopped before sending.";

constexpr int kExitNotSent = 4;

const QString kDirectory = QStringLiteral("dir");
const QString kReversal = QStringLiteral("reversal");
const QString kMain = QStringLiteral("main");
const QString kOther = QStringLiteral("other");

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-ID"), QStringLiteral("the first fill's RXInfoID"));
    line.addFurtherArguments(QStringLiteral("RX-ID"), QStringLiteral("further fills"));
    line.addOption(kDirectory, QStringLiteral("DIR"), QStringLiteral("the exchange directory"),
                   CommandLine::Presence::Required);
    line.addFlag(kReversal, QStringLiteral("reverse the fill's paid claim"));
    line.addFlag(kMain, QStringLiteral("bill the main plan when the fill has two"));
    line.addFlag(kOther, QStringLiteral("bill the other plan when the fill has two"));
    line.addDatabaseOption();
    line.addJsonOption();
}

// What stops the command before anything is billed, and its exit code.
struct Refusal {
    QString problem;
    int code = kExitOk;
};

// The fills of the command line in colRX, read as a host reads them; refused when one
// does not exist or is covered otherwise than the first.
Refusal loadFills(DbConnection& connection, Wrapper& wrapper, const QList<qint32>& ids) {
    for (qsizetype i = 0; i < ids.size(); ++i) {
        if (!rowExists(connection, QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"), ids.at(i),
                       "tvrx:submit")) {
            return {QStringLiteral("no fill with RXInfoID %1").arg(ids.at(i)), kExitFailed};
        }
        const auto rx = i == 0 ? wrapper.colRX()->Item(1) : wrapper.colRX()->Add();
        rx->RXInfoID = ids.at(i);
        rx->GetData();
        const qint32 coverage = wrapper.colRX()->Item(1)->PatInsID;
        if (rx->PatInsID != coverage) {
            return {QStringLiteral("fill %1 is covered by PatInsID %2, not %3 as fill %4")
                        .arg(ids.at(i))
                        .arg(rx->PatInsID)
                        .arg(coverage)
                        .arg(ids.first()),
                    kExitUsage};
        }
    }
    return {};
}

// What each payer said of each fill, as the decoder read it.
QJsonArray fillsJson(Wrapper& wrapper) {
    QJsonArray fills;
    for (int i = 1; i <= wrapper.colRX()->Count(); ++i) {
        const auto rx = wrapper.colRX()->Item(i);
        fills.append(QJsonObject{{"RXInfoID", rx->RXInfoID},
                                 {"Number", rx->Number},
                                 {"response", responseJson(*rx->Response())},
                                 {"otherResponse", responseJson(*rx->OtherResponse())}});
    }
    return fills;
}

void printFills(Wrapper& wrapper) {
    for (int i = 1; i <= wrapper.colRX()->Count(); ++i) {
        const auto rx = wrapper.colRX()->Item(i);
        const QString main = rx->Response()->PaidStatus();
        const QString other = rx->OtherResponse()->PaidStatus();
        std::printf("Rx %d (fill %d): main plan %s%s\n", rx->Number, rx->RXInfoID,
                    qPrintable(main.isEmpty() ? QStringLiteral("-") : main),
                    other.isEmpty() ? "" : qPrintable(QStringLiteral(", other plan ") + other));
    }
}

int exitCode(const Wrapper& wrapper, const WatchedTransmitFace& face) {
    if (wrapper.ClaimDone) return kExitOk;
    if (!face.shown) return kExitNotSent;
    return face.answered ? kExitFailed : kExitAborted;
}

int run(const CommandLine& line) {
    QList<qint32> ids;
    for (qsizetype i = 0; i < line.arguments().size(); ++i) {
        const std::optional<qint32> key = line.key(i);
        if (!key) return line.usageError(notAKey(line.arguments().at(i)));
        ids.append(*key);
    }
    if (line.isSet(kMain) && line.isSet(kOther)) {
        return line.usageError(QStringLiteral("--main and --other exclude each other"));
    }
    const bool reversal = line.isSet(kReversal);
    if (reversal && ids.size() > 1) {
        return line.usageError(QStringLiteral("a reversal takes one fill"));
    }
    const QString directory = line.value(kDirectory);
    const QString unusable = exchangeDirectoryProblem(directory);
    if (!unusable.isEmpty()) return line.failed(unusable);

    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    auto console = std::make_shared<ConsoleUserInteraction>();
    if (line.isSet(kMain)) console->addAnswer(QStringLiteral("1"));
    if (line.isSet(kOther)) console->addAnswer(QStringLiteral("2"));
    mdlMain::UserService = console;
    auto face = std::make_shared<WatchedTransmitFace>();
    setTransmitFace(face);

    Wrapper wrapper;
    wrapper.setConnection(connection);
    const Refusal refusal = loadFills(*connection, wrapper, ids);
    if (!refusal.problem.isEmpty()) {
        session.printReports();
        return refusal.code == kExitUsage ? line.usageError(refusal.problem)
                                          : line.failed(refusal.problem);
    }
    PlanRows rows;
    Frame frame("tvrx:submit");
    frame([&] { rows = openPlanRows(wrapper.colRX()->Item(1)->PatInsID); });
    wrapper.SubmitClaim(directory, rows.rsPatIns, rows.rsIns, reversal);
    PlainTree tree;
    wrapper.BuildTree(tree);

    const int code = exitCode(wrapper, *face);
    const QString message = wrapper.ErrorMessage();
    if (line.json()) {
        JsonObjectText out;
        out.add(QStringLiteral("ClaimDone"), wrapper.ClaimDone);
        out.add(QStringLiteral("ErrorMessage"), toNotation(message));
        out.add(QStringLiteral("tree"), QJsonArray::fromStringList(tree.outline()));
        out.add(QStringLiteral("fills"), fillsJson(wrapper));
        out.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(out);
        return code;
    }
    printTree(tree, stdout);
    printFills(wrapper);
    if (message != QLatin1String("\r\n")) {
        std::printf("%s\n", qPrintable(message.trimmed()));
    }
    session.printReports();
    return code;
}

}  // namespace

Command submitCommand() {
    return {QStringLiteral("submit"),
            QStringLiteral("bill fills to their payer and print what it decided"),
            QString::fromLatin1(kDescription), declare, run};
}

}  // namespace tvrx::cli
