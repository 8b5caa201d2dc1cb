#include "session/runtime/Clock.h"

namespace tvrx {

// Claims and logs carry the pharmacy's wall-clock time to the second.
QDateTime SystemClock::now() const {
    QDateTime at = QDateTime::currentDateTime();
    at.setTime(QTime(at.time().hour(), at.time().minute(), at.time().second()));
    return at;
}

}  // namespace tvrx
