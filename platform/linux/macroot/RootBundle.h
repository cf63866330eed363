#pragma once

#include "platform/Bundle.h"
#include "platform/linux/macroot/MacRoot.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace cirrovane {

/// The bundle that a Mac root describes.
class RootBundle final : public Bundle {
 public:
  explicit RootBundle(MacRoot root) : root_(std::move(root)) {}

  std::string location() const override;
  std::optional<std::string> infoText(std::string_view key) const override;

 private:
  MacRoot root_;
};

}  // namespace cirrovane
