#pragma once

#include "ui/viewmodels/MenuCommands.h"

#include <QMenuBar>
#include <memory>

namespace cirrovane {

/// The menu bar of a desktop that has one for all windows of an application, also while none is open.
std::unique_ptr<QMenuBar> makeMenuBar(const MenuCommands& commands);

}  // namespace cirrovane
