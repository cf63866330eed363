#include "platform/linux/macroot/RootSystemInformation.h"

#include "platform/linux/macroot/MachineFacts.h"
#include "platform/posix/HostCondition.h"

#include <algorithm>
#include <array>
#include <utility>

#include <nlohmann/json.hpp>

namespace cirrovane {
namespace {

using nlohmann::json;

constexpr std::array<std::pair<std::string_view, ThermalState>, 4> kThermalStates = {{
    {"nominal", ThermalState::nominal},
    {"fair", ThermalState::fair},
    {"serious", ThermalState::serious},
    {"critical", ThermalState::critical},
}};

std::optional<bool> isOnMains(const json& description) {
  const auto state = description.find("Power Source State");
  if (state != description.end() && *state == "AC Power") {
    return true;
  }
  return state != description.end() && *state == "Battery Power" ? std::optional(false) : std::nullopt;
}

}  // namespace

bool RootSystemInformation::hasUbiquityIdentityToken() const {
  return booleanFact(root_.facts(), "ubiquityIdentityToken").value_or(false);
}

bool RootSystemInformation::isApplicationRunning(std::string_view bundleIdentifier) const {
  const json facts = root_.facts();
  const auto running = facts.find("runningApplications");
  return running != facts.end() && std::ranges::any_of(*running, [&](const json& identifier) {
           return identifier.get_ref<const std::string&>() == bundleIdentifier;
         });
}

std::optional<ThermalState> RootSystemInformation::thermalState() const {
  const std::string name = root_.facts().value("thermalState", std::string());
  const auto* found = std::ranges::find(kThermalStates, name, &std::pair<std::string_view, ThermalState>::first);
  return found != kThermalStates.end() ? std::optional(found->second) : std::nullopt;
}

bool RootSystemInformation::isLowPowerModeEnabled() const {
  return booleanFact(root_.facts(), "lowPowerMode").value_or(false);
}

double RootSystemInformation::systemUptime() const {
  return numericFact(root_.facts(), "uptimeSeconds").value_or(0);
}

std::uint64_t RootSystemInformation::physicalMemory() const {
  const auto bytes = integerFact(root_.facts(), "physicalMemory");
  return bytes && *bytes > 0 ? static_cast<std::uint64_t>(*bytes) : 0;
}

std::optional<std::string> RootSystemInformation::environmentVariable(const std::string& name) const {
  if (const auto described = root_.environment()) {
    const auto found = described->find(name);
    return found != described->end() ? std::optional(found->second) : std::nullopt;
  }
  return hostEnvironmentVariable(name);
}

std::optional<LoadAverages> RootSystemInformation::loadAverages() const {
  const auto samples = root_.facts().value("loadAverages", std::vector<double>());
  return samples.size() == 3 ? std::optional(LoadAverages{samples[0], samples[1], samples[2]}) : std::nullopt;
}

std::vector<PowerSource> RootSystemInformation::powerSources() const {
  std::vector<PowerSource> sources;
  for (const json& description : root_.facts().value("powerSources", json::array())) {
    sources.push_back({numericFact(description, "Current Capacity"), integerFact(description, "Max Capacity"),
                       booleanFact(description, "Is Charging"), isOnMains(description)});
  }
  return sources;
}

}  // namespace cirrovane
