#pragma once

#include "platform/Workspace.h"

#include <string>
#include <vector>

namespace cirrovane::test {

/// A desktop that only takes note of what it is asked for.
class FakeWorkspace final : public Workspace {
 public:
  void reveal(const std::string& path) override { revealed_.push_back(path); }
  void openURL(const std::string& url) override { opened_.push_back(url); }

  const std::vector<std::string>& revealed() const { return revealed_; }
  const std::vector<std::string>& opened() const { return opened_; }

 private:
  std::vector<std::string> revealed_;
  std::vector<std::string> opened_;
};

}  // namespace cirrovane::test
