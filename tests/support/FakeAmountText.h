#pragma once

#include "platform/AmountText.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace cirrovane::test {

/// Amounts that tell what was asked for.
class FakeAmountText final : public AmountText {
 public:
  std::string byteCount(std::int64_t bytes) const override { return std::to_string(bytes) + " bytes"; }
  std::string duration(double seconds) const override { return std::to_string(std::llround(seconds)) + " seconds"; }
};

}  // namespace cirrovane::test
