#include "platform/macos/plain/AlternativePlaces.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

constexpr std::array<AlternativePlace, 1> kPlaces = {{
    {"/usr/sbin/route", "/sbin/route"},
}};

}  // namespace

std::span<const AlternativePlace> alternativePlaces() {
  return kPlaces;
}

std::string placeOf(const std::string& path, std::span<const AlternativePlace> places,
                    const std::function<bool(const std::string&)>& isExecutable) {
  const auto found = std::ranges::find(places, path, &AlternativePlace::asked);
  if (found == places.end() || isExecutable(path)) {
    return path;
  }
  const std::string actual(found->actual);
  return isExecutable(actual) ? actual : path;
}

}  // namespace cirrovane
