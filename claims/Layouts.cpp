#include "claims/Layouts.h"

namespace tvrx::claims {

namespace {

// The layout the Form names; the last of the list, the default, for any other Form.
const Layout& layoutForForm(std::span<const Layout* const> layouts, const QString& form) {
    for (const Layout* layout : layouts.first(layouts.size() - 1)) {
        if (form == layout->name) return *layout;
    }
    return *layouts.back();
}

}  // namespace

const Layout& headerLayout(const QString& form) {
    return layoutForForm(headerLayouts(), form);
}

const Layout& claimLayout(const QString& form) {
    return layoutForForm(claimLayouts(), form);
}

const Layout& reversalLayout(const QString& form) {
    return layoutForForm(reversalLayouts(), form);
}

}  // namespace tvrx::claims
