#include "session/data/Connections.h"

#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/ErrorReporter.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/LibraryFiles.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"

#include <QFileInfo>

namespace tvrx::mdlMain {

namespace {

const QString kLookupFile = QStringLiteral("datalookup.db");

thread_local LibraryFile lookupSearch;

void showTimedOutBox() {
    user().MsgBox(QStringLiteral("It appears that your data connection has timed out. We "
                                 "recommend closing Tessivar and\r\nreopening to avoid more "
                                 "errors of this type. "),
                  Buttons::OKOnly, Icon::Information, 1, QStringLiteral("Data Error"));
}

void showLookupMissingBox() {
    user().MsgBox(QStringLiteral("Required data file, %1, not found. Contact technical support."
                                 "\r\nPhone - 000-555-0199. Tessivar will not function properly.")
                      .arg(kLookupFile),
                  Buttons::OKOnly, Icon::Critical, 1, appConfig().ProductName);
}

void showNoConnectionBox() {
    user().MsgBox(QStringLiteral("It appears your Data Server connection has failed. Close out of "
                                 "Tessivar (or Lite)\r\nand restart the application. If this "
                                 "problem persists contact technical support."),
                  Buttons::OKOnly, Icon::Exclamation, 1, appConfig().Title);
}

DbConnection& mainConnection() {
    if (!MainConnection) fail(err::ObjectVariableNotSet);
    return *MainConnection;
}

// The folder the error report names as the application's: the host's folder of library
// files, or else the folder the library file lies in.
QString applicationPath(const AppConfig& config) {
    if (!config.LibraryFolder.isEmpty()) return config.LibraryFolder;
    const QString library = libraryFilePath();
    return library.isEmpty() ? QString() : QFileInfo(library).path();
}

}  // namespace

QString lookupFileName() {
    return kLookupFile;
}

LibraryFile lastLookupSearch() {
    return lookupSearch;
}

bool StartErrors() {
    bool result = false;
    RecordSet store;
    Frame frame("mdlMain:StartErrors");
    frame.on(err::LostLink, OnFailure::BoxAndLeave, showTimedOutBox);
    frame([&] { reporter(); });
    frame([&] {
        store =
            mainConnection().OpenRecordSet(QStringLiteral("Select Email, Name, Phone From Store"));
    });
    const AppConfig config = appConfig();
    frame([&] { reporter().setApplicationPath(applicationPath(config)); });
    frame([&] { reporter().setProductName(config.ProductName); });
    frame([&] { reporter().setVersion(config.versionText()); });
    frame([&] { reporter().setReporterOption(false); });
    // A test that fails resumes inside its block, as the original handler did.
    bool hasRow = true;
    frame([&] { hasRow = !store.Eof(); });
    if (hasRow) {
        frame([&] {
            reporter().setStoreEMail(store.Fields(QStringLiteral("EMail")).toString() + QString());
        });
        frame([&] {
            reporter().setStoreName(store.Fields(QStringLiteral("Name")).toString() + QString());
        });
        frame([&] {
            reporter().setStorePhone(store.Fields(QStringLiteral("Phone")).toString() + QString());
        });
    }
    frame([&] {
        if (store.State() == 1) store.Close();
    });
    frame([&] { result = true; });
    return result;
}

bool ConnectLookup() {
    bool result = false;
    Frame frame("mdlMain:ConnectLookup");
    frame([&] {
        if (!LookupConnection) LookupConnection = std::make_shared<DbConnection>();
        if (LookupConnection->State() == 1) {
            result = true;
            return;
        }
        lookupSearch = findLibraryFile(kLookupFile);
        if (lookupSearch.path.isEmpty()) {
            showLookupMissingBox();
            return;
        }
        LookupConnection->setConnectionString(QStringLiteral("sqlite://") + lookupSearch.path);
        LookupConnection->setReadOnly(true);
        LookupConnection->Open();
        result = true;
    });
    return result;
}

bool CheckConnection() {
    bool result = false;
    Frame frame("mdlMain:CheckConnection");
    if (!MainConnection) {
        showNoConnectionBox();
        return false;
    }
    frame([&] {
        if (MainConnection->State() == 0) MainConnection->Open();
    });
    frame([&] {
        if (catalogue().RxDB().State() == 0) catalogue().RxDB().Open();
    });
    frame([&] { result = true; });
    return result;
}

void setConnection(std::shared_ptr<DbConnection> connection, const QString& label,
                   ConnectionVariant variant) {
    Frame frame(label);
    MainConnection = std::move(connection);
    bool started = false;
    frame([&] { started = StartErrors(); });
    if (variant == ConnectionVariant::clsPatient && !started) return;
    frame([&] {
        if (catalogue().RxDB().State() == 1) catalogue().RxDB().Close();
    });
    frame([&] { catalogue().RxDB().setConnectionString(mainConnection().ConnectionString()); });
    frame([&] { catalogue().RxDB().Open(); });
}

}  // namespace tvrx::mdlMain
