#pragma once

#include "platform/SystemInformation.h"
#include "platform/linux/macroot/MacRoot.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane {

/// The condition of the Mac that a Mac root describes.
class RootSystemInformation final : public SystemInformation {
 public:
  explicit RootSystemInformation(MacRoot root) : root_(std::move(root)) {}

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
  MacRoot root_;
};

}  // namespace cirrovane
