#pragma once

#include <string>

namespace cirrovane {

/// What the user copies to paste elsewhere. Main thread only.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  /// Replaces whatever was copied before.
  virtual void setText(const std::string& text) = 0;
};

}  // namespace cirrovane
