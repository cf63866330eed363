#include "platform/linux/host/HostSystemInformation.h"

#include "platform/linux/host/HostPower.h"
#include "platform/posix/HostCondition.h"

#include <ctime>
#include <unistd.h>

namespace cirrovane {

bool HostSystemInformation::hasUbiquityIdentityToken() const {
  return false;
}

bool HostSystemInformation::isApplicationRunning(std::string_view /*bundleIdentifier*/) const {
  return false;
}

std::optional<ThermalState> HostSystemInformation::thermalState() const {
  return std::nullopt;
}

bool HostSystemInformation::isLowPowerModeEnabled() const {
  return false;
}

double HostSystemInformation::systemUptime() const {
  timespec time{};
  return clock_gettime(CLOCK_BOOTTIME, &time) == 0
             ? static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9
             : 0;
}

std::uint64_t HostSystemInformation::physicalMemory() const {
  const auto pages = sysconf(_SC_PHYS_PAGES);
  const auto pageSize = sysconf(_SC_PAGESIZE);
  return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) : 0;
}

std::optional<std::string> HostSystemInformation::environmentVariable(const std::string& name) const {
  return hostEnvironmentVariable(name);
}

std::optional<LoadAverages> HostSystemInformation::loadAverages() const {
  return hostLoadAverages();
}

std::vector<PowerSource> HostSystemInformation::powerSources() const {
  return hostPowerSources();
}

}  // namespace cirrovane
