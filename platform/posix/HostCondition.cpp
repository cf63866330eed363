#include "platform/posix/HostCondition.h"

#include <array>
#include <cstdlib>

namespace cirrovane {

std::optional<LoadAverages> hostLoadAverages() {
  std::array<double, 3> samples{};
  if (getloadavg(samples.data(), static_cast<int>(samples.size())) != static_cast<int>(samples.size())) {
    return std::nullopt;
  }
  return LoadAverages{samples[0], samples[1], samples[2]};
}

std::optional<std::string> hostEnvironmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace cirrovane
