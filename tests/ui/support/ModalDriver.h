#pragma once

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace tvrx::test {

// Plays the user's part while the code under test sits in a dialog's exec(): once a modal
// dialog is up, the action presses its buttons or types into it. A dialog that never turns
// up, is of another kind, or stays open after the action fails the test and is closed
// after a few seconds, so a broken test never hangs.
template <class Dialog>
void onNextModal(std::function<void(Dialog*)> action, int timeoutMs = 5000) {
    auto* poll = new QTimer(qApp);
    QElapsedTimer clock;
    clock.start();
    QObject::connect(
        poll, &QTimer::timeout, poll,
        [poll, clock, action, timeoutMs, acted = false, target = QPointer<QDialog>()]() mutable {
            auto finish = [poll] {
                poll->stop();
                poll->deleteLater();
            };
            if (!acted) {
                target = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                acted = target != nullptr;
                if (acted) {
                    if (auto* wanted = qobject_cast<Dialog*>(target.data())) {
                        action(wanted);
                    } else {
                        ADD_FAILURE() << "a modal dialog of another kind appeared";
                    }
                }
            }
            if (acted && (!target || !target->isVisible())) return finish();
            if (clock.elapsed() < timeoutMs) return;
            ADD_FAILURE() << (acted ? "the dialog stayed open" : "no modal dialog appeared");
            if (target) target->done(QDialog::Rejected);
            finish();
        });
    poll->start(10);
}

}  // namespace tvrx::test
