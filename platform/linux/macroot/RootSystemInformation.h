#pragma once

#include "platform/SystemInformation.h"
#include "platform/linux/macroot/MacRoot.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane {

/// The condition of the Mac that a Mac root describes; where it describes none, of the machine that we run on, of which
/// what only a Mac can tell stays absent.
class LinuxSystemInformation final : public SystemInformation {
 public:
  explicit LinuxSystemInformation(const MacRoot& root) : root_(root) {}

  bool hasUbiquityIdentityToken() const override;
  bool isApplicationRunning(std::string_view bundleIdentifier) const override;
  std::optional<ThermalState> thermalState() const override;
  bool isLowPowerModeEnabled() const override;
  double systemUptime() const override;
  std::uint64_t physicalMemory() const override;
  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::optional<LoadAverages> loadAverages() const override;
  std::vector<PowerSource> powerSources() const override;

 private:
  const MacRoot& root_;
};

}  // namespace cirrovane
