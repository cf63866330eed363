#pragma once

#include <compare>
#include <string_view>

namespace cirrovane {

/// How the user's language orders names. Callable on the main thread.
class Collation {
 public:
  virtual ~Collation() = default;
  /// Compares two names without regard to case.
  virtual std::weak_ordering compare(std::string_view lhs, std::string_view rhs) const = 0;
};

}  // namespace cirrovane
