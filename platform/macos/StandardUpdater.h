#pragma once

#include "platform/Updater.h"

#include <memory>

namespace cirrovane {

/// Starts the update framework that this program was built with; nullptr when it was built without one. Main thread
/// only.
std::unique_ptr<Updater> makeStandardUpdater();

}  // namespace cirrovane
