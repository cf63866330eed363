#pragma once

#include <cmath>
#include <numbers>

namespace cirrovane {

/// The share of a normal distribution below the value.
inline double normalShare(double value) {
  return std::erfc(-value / std::numbers::sqrt2) / 2;
}

}  // namespace cirrovane
