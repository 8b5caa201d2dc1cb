#include "prescription/ClinicalScreening.h"

#include "prescription/DemoScreening.h"
#include "session/runtime/Session.h"

#include <QStringList>

namespace tvrx {

// Message texts break their lines with a carriage return and a line feed.
QString AllergyResult::text() const {
    return QStringList{Allergy, Code, Drug, Class}.join(QStringLiteral("\r\n"));
}

std::shared_ptr<InteractionScreen> createInteractionScreen() {
    return mdlMain::InteractionScreens.make<DemoInteractionScreen>();
}

std::shared_ptr<AllergyScreen> createAllergyScreen() {
    return mdlMain::AllergyScreens.make<DemoAllergyScreen>();
}

}  // namespace tvrx
