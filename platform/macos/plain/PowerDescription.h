#pragma once

#include "platform/SystemInformation.h"

#include <optional>
#include <string>

namespace cirrovane {

/// What is asked of the system about each source of power.
enum class PowerKey { currentCapacity, maximumCapacity, isCharging, state };

/// The system's description of one source of power. A value that is missing, or of another type than the key's, is
/// absent.
class PowerDescription {
 public:
  virtual ~PowerDescription() = default;
  virtual std::optional<double> number(PowerKey key) const = 0;
  virtual std::optional<bool> boolean(PowerKey key) const = 0;
  virtual std::optional<std::string> text(PowerKey key) const = 0;
};

PowerSource powerSourceOf(const PowerDescription& description);

}  // namespace cirrovane
