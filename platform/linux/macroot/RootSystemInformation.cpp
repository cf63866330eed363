#include "platform/linux/LinuxSystemInformation.h"

#include "platform/linux/host/HostPower.h"
#include "platform/linux/macroot/MachineFacts.h"
#include "platform/posix/HostLoad.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <unistd.h>
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

double hostUptime() {
  timespec time{};
  return clock_gettime(CLOCK_BOOTTIME, &time) == 0
             ? static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9
             : 0;
}

std::uint64_t hostMemory() {
  const auto pages = sysconf(_SC_PHYS_PAGES);
  const auto pageSize = sysconf(_SC_PAGESIZE);
  return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) : 0;
}

}  // namespace

bool LinuxSystemInformation::hasUbiquityIdentityToken() const {
  return booleanFact(root_.facts(), "ubiquityIdentityToken").value_or(false);
}

bool LinuxSystemInformation::isApplicationRunning(std::string_view bundleIdentifier) const {
  const json facts = root_.facts();
  const auto running = facts.find("runningApplications");
  return running != facts.end() && std::ranges::any_of(*running, [&](const json& identifier) {
           return identifier.get_ref<const std::string&>() == bundleIdentifier;
         });
}

std::optional<ThermalState> LinuxSystemInformation::thermalState() const {
  const std::string name = root_.facts().value("thermalState", std::string());
  const auto* found = std::ranges::find(kThermalStates, name, &std::pair<std::string_view, ThermalState>::first);
  return found != kThermalStates.end() ? std::optional(found->second) : std::nullopt;
}

bool LinuxSystemInformation::isLowPowerModeEnabled() const {
  return booleanFact(root_.facts(), "lowPowerMode").value_or(false);
}

double LinuxSystemInformation::systemUptime() const {
  return root_.describesHost() ? hostUptime() : numericFact(root_.facts(), "uptimeSeconds").value_or(0);
}

std::uint64_t LinuxSystemInformation::physicalMemory() const {
  if (root_.describesHost()) {
    return hostMemory();
  }
  const auto bytes = integerFact(root_.facts(), "physicalMemory");
  return bytes && *bytes > 0 ? static_cast<std::uint64_t>(*bytes) : 0;
}

std::optional<std::string> LinuxSystemInformation::environmentVariable(const std::string& name) const {
  if (const auto described = root_.environment()) {
    const auto found = described->find(name);
    return found != described->end() ? std::optional(found->second) : std::nullopt;
  }
  const char* value = std::getenv(name.c_str());
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<LoadAverages> LinuxSystemInformation::loadAverages() const {
  if (root_.describesHost()) {
    return hostLoadAverages();
  }
  const auto samples = root_.facts().value("loadAverages", std::vector<double>());
  return samples.size() == 3 ? std::optional(LoadAverages{samples[0], samples[1], samples[2]}) : std::nullopt;
}

std::vector<PowerSource> LinuxSystemInformation::powerSources() const {
  if (root_.describesHost()) {
    return hostPowerSources();
  }
  std::vector<PowerSource> sources;
  for (const json& description : root_.facts().value("powerSources", json::array())) {
    sources.push_back({numericFact(description, "Current Capacity"), integerFact(description, "Max Capacity"),
                       booleanFact(description, "Is Charging")});
  }
  return sources;
}

}  // namespace cirrovane
