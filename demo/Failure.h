#pragma once

#include <stdexcept>

namespace cirrovane::demo {

/// Something that could not be done; the message says why, and what to do about it.
class CouldNot : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Arguments that mean nothing; the message says what would.
class WrongUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace cirrovane::demo
