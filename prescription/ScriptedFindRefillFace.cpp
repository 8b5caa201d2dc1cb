#include "prescription/ScriptedFindRefillFace.h"

namespace tvrx {

FindRefillGesture ScriptedFindRefillFace::next(const frmFindRefill& form) {
    shown_.append({form.Caption, form.rows(), form.Row});
    if (gestures_.empty()) return {};
    const FindRefillGesture gesture = gestures_.front();
    gestures_.pop_front();
    return gesture;
}

}  // namespace tvrx
