#pragma once

#include "platform/macos/plain/AnnouncedPowerGate.h"

#include <memory>

namespace cirrovane {

/// This Mac's power, for any program: sleep is heard of on a queue of the system's, without an application. No quits.
PowerSystem systemPower();

/// A gate to it, with a queue of its own.
std::unique_ptr<PowerGate> makeSystemPowerGate(PowerGateListener& listener, PowerSystem system);

}  // namespace cirrovane
