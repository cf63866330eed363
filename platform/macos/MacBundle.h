#pragma once

#include "platform/Bundle.h"

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// The bundle that this process was started from.
class MacBundle final : public Bundle {
 public:
  std::string location() const override;
  std::optional<std::string> infoText(std::string_view key) const override;
};

}  // namespace cirrovane
