#pragma once

#include "base/JSONRecord.h"
#include "base/Time.h"

#include <optional>
#include <string>
#include <tuple>

namespace cirrovane {

/// That the user knows of whatever the coverage finds at a path and below it.
struct Acknowledgement {
  /// Absolute, without a trailing slash.
  std::string path;
  Time acknowledgedAt;
  /// From then on it says nothing; absent where it holds for good.
  std::optional<Time> expiresAt;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"path", &Acknowledgement::path},
                      JSONField{"acknowledgedAt", &Acknowledgement::acknowledgedAt},
                      JSONField{"expiresAt", &Acknowledgement::expiresAt}};
  }
  friend bool operator==(const Acknowledgement&, const Acknowledgement&) = default;
};

}  // namespace cirrovane
