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
    if (mdlMain::InteractionScreenFactory) return mdlMain::InteractionScreenFactory();
    return std::make_shared<DemoInteractionScreen>();
}

std::shared_ptr<AllergyScreen> createAllergyScreen() {
    if (mdlMain::AllergyScreenFactory) return mdlMain::AllergyScreenFactory();
    return std::make_shared<DemoAllergyScreen>();
}

void setInteractionScreenFactory(std::function<std::shared_ptr<InteractionScreen>()> factory) {
    mdlMain::InteractionScreenFactory = std::move(factory);
}

void setAllergyScreenFactory(std::function<std::shared_ptr<AllergyScreen>()> factory) {
    mdlMain::AllergyScreenFactory = std::move(factory);
}

}  // namespace tvrx
