#pragma once

#include <string>

namespace cirrovane {

/// What the desktop's other programs do for this one. Main thread only; fails silently.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// Shows one existing item, selected, in the file manager.
  virtual void reveal(const std::string& path) = 0;
  /// Opens a web page in the default browser.
  virtual void openURL(const std::string& url) = 0;
};

}  // namespace cirrovane
