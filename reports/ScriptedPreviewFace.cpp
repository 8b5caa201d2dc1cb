#include "reports/ScriptedPreviewFace.h"

namespace tvrx {

void ScriptedPreviewFace::showModal(frmPrint& form) {
    if (action_) action_(form);
    shown_.append({form.Caption, form.document(), form.lblPage.Caption});
}

void ScriptedPreviewFace::refresh(frmPrint& /*form*/) {
    ++refreshes_;
}

void ScriptedPreviewFace::close(frmPrint& /*form*/) {}

}  // namespace tvrx
