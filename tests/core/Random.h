#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace cirrovane::test {

/// Draws from a generator of the C++ standard, whose numbers are the same everywhere, without the standard's
/// distributions, whose numbers are not.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}

  std::size_t below(std::size_t limit) { return engine_() % limit; }
  bool oneIn(std::size_t chances) { return below(chances) == 0; }
  template <class Range>
  const auto& pick(const Range& range) {
    return range[below(std::size(range))];
  }

 private:
  std::mt19937 engine_;
};

}  // namespace cirrovane::test
