#include "platform/macos/plain/PowerDescription.h"

#include "platform/macos/plain/FrameworkNumbers.h"

namespace cirrovane {

PowerSource powerSourceOf(const PowerDescription& description) {
  PowerSource source;
  source.currentCapacity = description.number(PowerKey::currentCapacity);
  if (const auto capacity = description.number(PowerKey::maximumCapacity)) {
    source.maximumCapacity = wholeNumberOf(*capacity);
  }
  source.isCharging = description.boolean(PowerKey::isCharging);
  const std::optional<std::string> state = description.text(PowerKey::state);
  if (state == "AC Power") {
    source.isOnMains = true;
  } else if (state == "Battery Power") {
    source.isOnMains = false;
  }
  return source;
}

}  // namespace cirrovane
