#pragma once

#include "platform/FileStorage.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace cirrovane {

/// User defaults as one JSON object in a file. Read afresh at each use, so that two processes see each
/// other's settings and neither takes back what the other set.
class LinuxUserDefaults final : public UserDefaults {
 public:
  /// The folder is asked for at each use; the storage outlives this.
  LinuxUserDefaults(std::function<std::string()> folder, const FileStorage& storage)
      : folder_(std::move(folder)), storage_(storage) {}

  using UserDefaults::set;

  std::optional<DefaultsValue> value(std::string_view key) const override;
  std::optional<Failure> set(std::string_view key, bool value) override;
  std::optional<Failure> set(std::string_view key, const std::string& value) override;

 private:
  template <class Value>
  std::optional<Failure> store(std::string_view key, const Value& value);

  std::string path() const;

  std::function<std::string()> folder_;
  const FileStorage& storage_;
};

}  // namespace cirrovane
