#pragma once

#include "session/runtime/ComponentFactory.h"

#include <QString>

#include <functional>
#include <memory>

namespace tvrx {

class BusyPointer;
class Catalogue;
class Clock;
class DbConnection;
class AllergyScreen;
class ErrorReporter;
class PlanLookup;
class InteractionScreen;
class PageDocument;
class PreviewFace;
class RXImage;
class TransmitFace;
class UserInteraction;

// The session state shared by every object of the library, one set per thread.
namespace mdlMain {

// The host's connection, handed in through any class's Connection property.
extern thread_local std::shared_ptr<DbConnection> MainConnection;
// The lookup database of reject and conflict codes, opened by ConnectLookup.
extern thread_local std::shared_ptr<DbConnection> LookupConnection;
// The second data source for price tables, set through Wrapper.AltConnection.
extern thread_local std::shared_ptr<DbConnection> AlternateConnection;
extern thread_local bool UseAlternateSource;
extern thread_local std::shared_ptr<tvrx::ErrorReporter> ErrorReporter;
// The data catalogue with its own connection RxDB; created on first use.
extern thread_local std::shared_ptr<Catalogue> deMain;
// The prescription picked in the refill finder.
extern thread_local qint32 FindRefillRxInfoID;

// The services the logic talks through; a host or a test sets them.
extern thread_local std::shared_ptr<UserInteraction> UserService;
extern thread_local std::shared_ptr<Clock> ClockService;
// How the wait for a payer's response is shown (console, dialog, scripted).
extern thread_local std::shared_ptr<TransmitFace> TransmitService;
// How a report's preview is shown (a desktop window, a PDF file, a test's script).
extern thread_local std::shared_ptr<PreviewFace> PreviewService;

// The screen's pointer (hourglass while the result tree fills).
extern thread_local std::shared_ptr<BusyPointer> PointerService;

// The outside components made afresh for each use; a host or a test sets the factory.
// The plan directory of the insurance lookups (records/PlanLookup.h).
extern thread_local ComponentFactory<PlanLookup> PlanLookups;
// Page documents for reports (reports/PageDocument.h); recorded when none is installed.
extern thread_local ComponentFactory<PageDocument> Documents;
// The clinical screening of a fill against the patient's other fills and allergies
// (prescription/ClinicalScreening.h); the demonstration engine when none is installed.
extern thread_local ComponentFactory<InteractionScreen> InteractionScreens;
extern thread_local ComponentFactory<AllergyScreen> AllergyScreens;
// The store of scanned prescription images (prescription/RXImage.h); none is shipped.
extern thread_local ComponentFactory<RXImage> Scanners;

// The catalogue deMain, created on first use.
Catalogue& catalogue();

// The reporter, created on first use by the reporter factory.
tvrx::ErrorReporter& reporter();
// A new reporter of the kind the host chose (the default writes the error log).
std::shared_ptr<tvrx::ErrorReporter> createReporter();
void setReporterFactory(std::function<std::shared_ptr<tvrx::ErrorReporter>()> factory);

// The user-interaction service; the console one unless a host set another.
UserInteraction& user();
// The clock; the system's unless a host or a test set another.
const Clock& clock();

// Forgets the whole session state of this thread: connections, reporter, catalogue,
// services, component factories. Tests call it so that no test sees what another left behind.
void resetSession();

}  // namespace mdlMain
}  // namespace tvrx
