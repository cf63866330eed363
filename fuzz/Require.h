#pragma once

#include <cstdio>
#include <cstdlib>

namespace cirrovane {

/// Ends the program, so that the fuzzer keeps the input, where something that must always hold does not.
inline void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
  }
}

}  // namespace cirrovane
