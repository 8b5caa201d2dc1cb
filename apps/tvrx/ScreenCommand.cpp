#include "Command.h"
#include "RecordSession.h"
#include "ShowKinds.h"

#include "prescription/clsPrescription.h"
#include "reports/ConsolePreviewFace.h"
#include "reports/LaidOutDocument.h"
#include "session/data/DbConnection.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"

#include <QDate>

#include <cstdio>

namespace tvrx::cli {

namespace {

const char* kDescription =
    "Screens the fill with RXInfoID RX-ID against the patient's fills of the period before\n"
    "it (interactions) and against the patient's recorded allergies, with the\n"
    "demonstration engine: demonstration data, not for clinical use (docs/CLINICAL.md).\n"
    "Each interaction found is a report of its own: with --pdf FILE the reports are\n"
    "written to FILE-1.pdf, FILE-2.pdf and so on, otherwise their text is printed. Each\n"
    "allergy alert is printed.";

const QString kPdf = QStringLiteral("pdf");
const QString kLookBack = QStringLiteral("lookback");
const QString kToday = QStringLiteral("today");
const QString kOneFill = QStringLiteral("one-fill");

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-ID"), QStringLiteral("the fill's RXInfoID"));
    line.addOption(kPdf, QStringLiteral("FILE"),
                   QStringLiteral("write the reports as PDF files FILE-1.pdf, FILE-2.pdf ..."));
    line.addOption(kLookBack, QStringLiteral("DAYS"),
                   QStringLiteral("days of fills to screen (90 when not given)"));
    line.addOption(kToday, QStringLiteral("YYYY-MM-DD"),
                   QStringLiteral("screen as of this date instead of today"));
    line.addFlag(kOneFill, QStringLiteral("screen only the latest fill of each prescription"));
    line.addDatabaseOption();
}

// The alerts go to the command's output, each with its title, without waiting for anyone.
class AlertPrinter : public ConsoleUserInteraction {
public:
    AlertPrinter() : ConsoleUserInteraction(nullptr, stderr) {}

    Answer MsgBox(const QString& text, Buttons buttons, Icon /*icon*/, int defaultButton,
                  const QString& title) override {
        std::printf("%s\n", qPrintable(title));
        for (const QString& line : text.split(QStringLiteral("\r\n"))) {
            std::printf("  %s\n", qPrintable(line));
        }
        ++alerts;
        return defaultAnswer(buttons, defaultButton);
    }

    int alerts = 0;
};

// Counts the reports while the console face writes them.
class CountedFace : public ConsolePreviewFace {
public:
    using ConsolePreviewFace::ConsolePreviewFace;

    void showModal(frmPrint& form) override {
        ++reports;
        ConsolePreviewFace::showModal(form);
    }

    int reports = 0;
};

struct Settings {
    qint16 lookBack = 90;
    std::optional<QDate> today;
};

std::optional<Settings> settingsOf(const CommandLine& line, QString& problem) {
    Settings settings;
    if (line.isSet(kLookBack)) {
        bool whole = false;
        const int days = line.value(kLookBack).toInt(&whole);
        if (!whole || days < 0 || days > 32767) {
            problem = QStringLiteral("--lookback takes a number of days from 0 to 32767");
            return std::nullopt;
        }
        settings.lookBack = static_cast<qint16>(days);
    }
    if (line.isSet(kToday)) {
        const QDate date = QDate::fromString(line.value(kToday), Qt::ISODate);
        if (!date.isValid()) {
            problem = QStringLiteral("--today takes a date as YYYY-MM-DD");
            return std::nullopt;
        }
        settings.today = date;
    }
    return settings;
}

int run(const CommandLine& line) {
    const std::optional<qint32> key = line.key(0);
    if (!key) return line.usageError(notAKey(line.arguments().first()));
    QString problem;
    const std::optional<Settings> settings = settingsOf(line, problem);
    if (!settings) return line.usageError(problem);

    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    if (!rowExists(*connection, QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"), *key,
                   "tvrx:screen")) {
        session.printReports();
        return line.failed(QStringLiteral("no fill with RXInfoID %1").arg(*key));
    }
    if (settings->today) {
        mdlMain::ClockService =
            std::make_shared<FixedClock>(QDateTime(*settings->today, QTime(12, 0)));
    }
    if (line.isSet(kPdf))
        mdlMain::Documents.set([] { return std::make_shared<LaidOutDocument>(); });
    auto face = std::make_shared<CountedFace>(line.isSet(kPdf) ? line.value(kPdf) : QString());
    setPreviewFace(face);
    auto alerts = std::make_shared<AlertPrinter>();
    mdlMain::UserService = alerts;

    clsPrescription rx;
    rx.setConnection(connection);
    rx.RXInfoID = *key;
    rx.GetData();
    rx.ITXLookBack = settings->lookBack;
    rx.OneFill = line.isSet(kOneFill) ? 1 : 0;
    rx.Interactions();
    if (face->reports == 0) std::printf("No interaction found.\n");
    rx.Allergies();
    if (alerts->alerts == 0) std::printf("No allergy alert.\n");
    return session.printReports() > 0 ? kExitFailed : kExitOk;
}

}  // namespace

bool namesPdfFile(const QStringList& arguments) {
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--pdf") || argument.startsWith(QLatin1String("--pdf=")))
            return true;
    }
    return false;
}

Command screenCommand() {
    return {QStringLiteral("screen"),
            QStringLiteral("screen a fill for interactions and allergies"),
            QString::fromLatin1(kDescription),
            declare,
            run,
            namesPdfFile};
}

}  // namespace tvrx::cli
