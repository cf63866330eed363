#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cirrovane::demo {

/// A key of a file's cloud state and what it can be.
struct CloudKey {
  std::string_view name;
  /// Empty: any text.
  std::span<const std::string_view> values;
  std::string_view meaning;
};

std::span<const CloudKey> cloudKeys();

/// What is wrong with a key and a value that it is to get; absent when nothing is. An empty value is always right.
std::optional<std::string> complaintAbout(std::string_view name, std::string_view value);

/// A file's cloud state as lines of key=value. Lines that it does not know stay as they are.
class CloudState {
 public:
  CloudState() = default;
  explicit CloudState(std::string_view text);

  /// An empty value removes the key.
  void set(std::string_view key, std::string_view value);

  /// Uploaded, local, without conflicts and errors, neither left out nor paused nor kept from anybody; and without what
  /// no reader could make sense of.
  void settle();

  /// Takes away why it was not uploaded, and leaves the rest.
  void setUploaded();

  /// Whether the newest version has yet to reach iCloud.
  bool isPending() const;
  /// Whether there is nothing to write.
  bool isEmpty() const;
  std::string text() const;

 private:
  /// The last of repeated keys holds; empty without the key.
  std::string_view value(std::string_view key) const;

  std::vector<std::string> lines_;
};

}  // namespace cirrovane::demo
