#pragma once

#include "reports/frmPrint.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace tvrx {

// A preview played by a script, for tests: each showing is kept with its document, the
// script's action (if any) runs on the shown form as the user's clicks would, and then
// the form is closed as the user's Continue would close it.
class ScriptedPreviewFace : public PreviewFace {
public:
    struct Shown {
        QString caption;
        std::shared_ptr<PageDocument> document;
        // The page label as the form was closed.
        QString pageLabel;
    };

    // Runs on every form shown, before it closes.
    void onShow(std::function<void(frmPrint&)> action) { action_ = std::move(action); }

    const QList<Shown>& shown() const { return shown_; }
    int refreshes() const { return refreshes_; }

    void showModal(frmPrint& form) override;
    void refresh(frmPrint& form) override;
    void close(frmPrint& form) override;

private:
    std::function<void(frmPrint&)> action_;
    QList<Shown> shown_;
    int refreshes_ = 0;
};

}  // namespace tvrx
