#pragma once

#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>

namespace tvrx {

// The scanning component: the scanned image of a prescription, kept per prescription
// number.
class RXImage {
public:
    virtual ~RXImage() = default;
    // The connection it may read through (its text without the password) and the
    // prescription number the next calls are about.
    virtual void InitLibrary(const QString& connection, qint32 number) = 0;
    // The path of the number's image, empty when there is none. The application's
    // directory ends with a separator.
    virtual QString GetRXImage(const QString& applicationDirectory) = 0;
    // Lets the user give an image for the number and keeps it.
    virtual void ShowScanForm() = 0;
};

// A new scanning component of the kind the session's factory (mdlMain::Scanners) makes.
// With no factory installed there is no scanning component on this machine: creating one
// fails with 429, as an object that is not installed does.
std::shared_ptr<RXImage> createRXImage();

}  // namespace tvrx
