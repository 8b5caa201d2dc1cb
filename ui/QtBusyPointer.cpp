#include "ui/QtBusyPointer.h"

#include <QGuiApplication>

namespace tvrx {

void QtBusyPointer::setPointer(int pointer) {
    const bool wait = pointer == Hourglass;
    if (wait == waiting_) return;
    if (wait) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
    waiting_ = wait;
}

}  // namespace tvrx
