#pragma once

#include "prescription/RXImageFolder.h"

class QWidget;

namespace tvrx {

// The desktop's way to scan: an image file chosen in a file dialog over the window.
RXImageFolder::Picker fileDialogPicker(QWidget* window);

// A desktop host's scanning component: images kept in the folder, chosen in a file dialog.
void installDesktopScanner(QWidget* window, const QString& folder);

}  // namespace tvrx
