#pragma once

#include "platform/SystemInformation.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// The condition of the machine that the program runs on. What only a Mac can tell is absent.
class HostSystemInformation final : public SystemInformation {
 public:
  bool hasUbiquityIdentityToken() const override;
  bool isApplicationRunning(std::string_view bundleIdentifier) const override;
  std::optional<ThermalState> thermalState() const override;
  bool isLowPowerModeEnabled() const override;
  double systemUptime() const override;
  std::uint64_t physicalMemory() const override;
  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::optional<LoadAverages> loadAverages() const override;
  std::vector<PowerSource> powerSources() const override;
};

}  // namespace cirrovane
