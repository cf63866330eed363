#pragma once

#include "platform/Bundle.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane::test {

/// A bundle made of a path and texts; an application's, unless the test says otherwise.
class FakeBundle final : public Bundle {
 public:
  std::string path = "/Applications/Cirrovane.app";
  std::map<std::string, std::string, std::less<>> info;

  std::string location() const override { return path; }
  std::optional<std::string> infoText(std::string_view key) const override {
    const auto found = info.find(key);
    return found == info.end() ? std::nullopt : std::optional(found->second);
  }
};

}  // namespace cirrovane::test
