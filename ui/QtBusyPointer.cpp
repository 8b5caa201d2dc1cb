#include "ui/QtBusyPointer.h"

#include <QCursor>
#include <QGuiApplication>

namespace tvrx {

void QtBusyPointer::setPointer(int pointer) {
    const bool wait = pointer == Hourglass;
    if (wait == waiting_) return;
    if (wait) {
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
    waiting_ = wait;
}

}  // namespace tvrx
