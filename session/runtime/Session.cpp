#include "session/runtime/Session.h"

#include "session/data/Catalogue.h"
#include "session/runtime/BusyPointer.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/FileErrorReporter.h"

namespace tvrx::mdlMain {

thread_local std::shared_ptr<DbConnection> MainConnection;
thread_local std::shared_ptr<DbConnection> LookupConnection;
thread_local std::shared_ptr<DbConnection> AlternateConnection;
thread_local bool UseAlternateSource = false;
thread_local std::shared_ptr<tvrx::ErrorReporter> ErrorReporter;
thread_local std::shared_ptr<Catalogue> deMain;
thread_local qint32 FindRefillRxInfoID = 0;
thread_local std::shared_ptr<UserInteraction> UserService;
thread_local std::shared_ptr<Clock> ClockService;
thread_local std::shared_ptr<TransmitFace> TransmitService;
thread_local std::shared_ptr<PreviewFace> PreviewService;
thread_local std::shared_ptr<BusyPointer> PointerService;
thread_local ComponentFactory<PlanLookup> PlanLookups;
thread_local ComponentFactory<PageDocument> Documents;
thread_local ComponentFactory<InteractionScreen> InteractionScreens;
thread_local ComponentFactory<AllergyScreen> AllergyScreens;
thread_local ComponentFactory<RXImage> Scanners;

namespace {

std::function<std::shared_ptr<tvrx::ErrorReporter>()>& reporterFactory() {
    static std::function<std::shared_ptr<tvrx::ErrorReporter>()> factory;
    return factory;
}

}  // namespace

std::shared_ptr<tvrx::ErrorReporter> createReporter() {
    if (reporterFactory()) return reporterFactory()();
    return std::make_shared<FileErrorReporter>();
}

void setReporterFactory(std::function<std::shared_ptr<tvrx::ErrorReporter>()> factory) {
    reporterFactory() = std::move(factory);
}

Catalogue& catalogue() {
    if (!deMain) deMain = std::make_shared<Catalogue>();
    return *deMain;
}

tvrx::ErrorReporter& reporter() {
    if (!ErrorReporter) ErrorReporter = createReporter();
    return *ErrorReporter;
}

UserInteraction& user() {
    if (!UserService) UserService = std::make_shared<ConsoleUserInteraction>();
    return *UserService;
}

const Clock& clock() {
    if (!ClockService) ClockService = std::make_shared<SystemClock>();
    return *ClockService;
}

void resetSession() {
    deMain.reset();
    LookupConnection.reset();
    AlternateConnection.reset();
    MainConnection.reset();
    UseAlternateSource = false;
    ErrorReporter.reset();
    FindRefillRxInfoID = 0;
    UserService.reset();
    ClockService.reset();
    TransmitService.reset();
    PreviewService.reset();
    PointerService.reset();
    PlanLookups.set(nullptr);
    Documents.set(nullptr);
    InteractionScreens.set(nullptr);
    AllergyScreens.set(nullptr);
    Scanners.set(nullptr);
}

}  // namespace tvrx::mdlMain
