#include "prescription/RXImage.h"
#include "prescription/clsPrescription.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"

#include <QDir>

namespace tvrx {

namespace {

RXImage& required(const std::shared_ptr<RXImage>& scanner) {
    if (!scanner) fail(err::ObjectVariableNotSet);
    return *scanner;
}

// The component of this machine, told about the prescription number. Our connection
// strings never carry a procedure marker to cut at: the component gets the string
// without its password.
std::shared_ptr<RXImage> openScanner(Frame& frame, qint32 number) {
    std::shared_ptr<RXImage> scanner;
    frame([&] { scanner = createRXImage(); });
    QString connection;
    frame([&] { connection = withoutPassword(records::mainConnection().ConnectionString()); });
    frame([&] { required(scanner).InitLibrary(connection, number); });
    return scanner;
}

}  // namespace

std::shared_ptr<RXImage> createRXImage() {
    if (!mdlMain::Scanners.isSet()) {
        fail(err::CannotCreateObject, QStringLiteral("ActiveX component can't create object"),
             QStringLiteral("TVSCAN.RXImage"));
    }
    return mdlMain::Scanners.make();
}

// A machine without the scanning component reads as no image, silently.
QString clsPrescription::RXImageFile() {
    Frame frame("clsPrescription:RXImageFile");
    frame.on(err::CannotCreateObject, OnFailure::LeaveSilently);
    const std::shared_ptr<RXImage> scanner = openScanner(frame, Number);
    frame([&] {
        const QString directory = QDir::toNativeSeparators(appConfig().LibraryFolder + u'/');
        m_sRXImageFile = required(scanner).GetRXImage(directory);
    });
    return frame.left() ? QString() : m_sRXImageFile;
}

bool clsPrescription::SetRXImageFile() {
    bool result = false;
    Frame frame("clsPrescription:RXImageFile");
    frame.on(err::CannotCreateObject, OnFailure::LeaveSilently);
    const std::shared_ptr<RXImage> scanner = openScanner(frame, Number);
    frame([&] { required(scanner).ShowScanForm(); });
    frame([&] { result = true; });
    return result;
}

}  // namespace tvrx
