#pragma once

#include "platform/SystemInformation.h"

#include <map>
#include <set>
#include <string>

namespace cirrovane::test {

/// A machine whose condition is what a test sets; a healthy Mac to begin with.
class FakeSystemInformation final : public SystemInformation {
 public:
  struct Facts {
    bool hasUbiquityIdentityToken = true;
    std::set<std::string, std::less<>> runningApplications = {"com.apple.finder"};
    std::optional<ThermalState> thermalState = ThermalState::nominal;
    bool isLowPowerModeEnabled = false;
    double systemUptime = 273'600;
    std::uint64_t physicalMemory = 17'179'869'184;
    std::map<std::string, std::string> environment;
    std::optional<LoadAverages> loadAverages = LoadAverages{1.52, 1.31, 1.20};
    std::vector<PowerSource> powerSources = {{87, 100, true}};
  };
  Facts facts;

  bool hasUbiquityIdentityToken() const override { return facts.hasUbiquityIdentityToken; }
  bool isApplicationRunning(std::string_view bundleIdentifier) const override {
    return facts.runningApplications.contains(bundleIdentifier);
  }
  std::optional<ThermalState> thermalState() const override { return facts.thermalState; }
  bool isLowPowerModeEnabled() const override { return facts.isLowPowerModeEnabled; }
  double systemUptime() const override { return facts.systemUptime; }
  std::uint64_t physicalMemory() const override { return facts.physicalMemory; }
  std::optional<std::string> environmentVariable(const std::string& name) const override {
    const auto found = facts.environment.find(name);
    return found == facts.environment.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<LoadAverages> loadAverages() const override { return facts.loadAverages; }
  std::vector<PowerSource> powerSources() const override { return facts.powerSources; }
};

}  // namespace cirrovane::test
