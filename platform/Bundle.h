#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// What the running program was packaged as. Callable on any thread.
class Bundle {
 public:
  virtual ~Bundle() = default;
  /// Path of the application bundle, or of the bare executable; empty when unknown.
  virtual std::string location() const = 0;
  /// A text among the bundle's information; absent when the key is missing or holds another type.
  virtual std::optional<std::string> infoText(std::string_view key) const = 0;
};

/// Whether the program runs from an application bundle, and not as a bare executable.
bool isApplicationBundle(const Bundle& bundle);

}  // namespace cirrovane
