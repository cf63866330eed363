#pragma once

#include "platform/AmountText.h"

#include <cstdint>
#include <string>

namespace cirrovane {

/// Amounts by Foundation's rules for the user's locale.
class MacAmountText final : public AmountText {
 public:
  std::string byteCount(std::int64_t bytes) const override;
  std::string duration(double seconds) const override;
};

}  // namespace cirrovane
