#pragma once

#include "platform/Workspace.h"

#include <string>

namespace cirrovane {

/// Finder and the default browser.
class MacWorkspace final : public Workspace {
 public:
  void reveal(const std::string& path) override;
  void openURL(const std::string& url) override;
};

}  // namespace cirrovane
