#pragma once

#include "platform/Clipboard.h"

namespace cirrovane {

/// The desktop's clipboard.
class QtClipboard final : public Clipboard {
 public:
  void setText(const std::string& text) override;
};

}  // namespace cirrovane
