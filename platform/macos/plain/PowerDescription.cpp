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
  return source;
}

}  // namespace cirrovane
