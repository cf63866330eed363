#pragma once

#include "platform/Clipboard.h"

#include <string>

namespace cirrovane::test {

class NotedClipboard final : public Clipboard {
 public:
  void setText(const std::string& newText) override { text = newText; }

  std::string text;
};

}  // namespace cirrovane::test
