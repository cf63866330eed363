#include "platform/posix/HostLoad.h"

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

}  // namespace cirrovane
