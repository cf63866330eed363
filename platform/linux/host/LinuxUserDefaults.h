#pragma once

#include "platform/FileStorage.h"
#include "platform/UserDefaults.h"
#include "platform/linux/macroot/MacRoot.h"

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// User defaults as one JSON object in a file of the Mac root. Read afresh at each use, so that two processes see each
/// other's settings and neither takes back what the other set.
class LinuxUserDefaults final : public UserDefaults {
 public:
  LinuxUserDefaults(const MacRoot& root, const FileStorage& storage) : root_(root), storage_(storage) {}

  using UserDefaults::set;

  std::optional<DefaultsValue> value(std::string_view key) const override;
  std::optional<Failure> set(std::string_view key, bool value) override;
  std::optional<Failure> set(std::string_view key, const std::string& value) override;

 private:
  template <class Value>
  std::optional<Failure> store(std::string_view key, const Value& value);

  const MacRoot& root_;
  const FileStorage& storage_;
};

}  // namespace cirrovane
