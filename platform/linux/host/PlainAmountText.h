#pragma once

#include "platform/AmountText.h"

#include <cstdint>
#include <string>

namespace cirrovane {

/// A Mac's amounts in plain English, with a decimal point whatever the user's language: no library here writes them.
class PlainAmountText final : public AmountText {
 public:
  std::string byteCount(std::int64_t bytes) const override;
  std::string duration(double seconds) const override;
};

}  // namespace cirrovane
