#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace cirrovane {

/// A program that is not at the path by which it is commonly called.
struct AlternativePlace {
  std::string_view asked;
  std::string_view actual;
};

/// The programs of macOS of which that is true.
std::span<const AlternativePlace> alternativePlaces();

/// Where to find the program that is asked for: at its path, or, when it is not there but at the place in the table,
/// there.
std::string placeOf(const std::string& path, std::span<const AlternativePlace> places,
                    const std::function<bool(const std::string&)>& isExecutable);

}  // namespace cirrovane
