#pragma once

#include "platform/Clock.h"
#include "platform/FileStorage.h"
#include "platform/FileSystem.h"
#include "stores/Acknowledgement.h"
#include "stores/SharedFile.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What the user has acknowledged, and its file "acknowledged.json", which several programs may change side by side:
/// each call looks at the file as it is. Callable on any thread.
class AcknowledgementStore {
 public:
  /// Of the file at the path, or at the default place.
  AcknowledgementStore(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock,
                       std::optional<std::string> filePath = std::nullopt);

  /// Those that hold now, by the bytes of their paths.
  std::vector<Acknowledgement> current() const;

  /// Acknowledges the paths as of now, in place of what was said of them before; absent when that was written.
  std::optional<Failure> acknowledge(const std::vector<std::string>& paths, std::optional<Time> expiresAt) const;

  /// Takes back what holds for exactly these paths; a failure, and nothing done, when one of them has none.
  std::optional<Failure> forget(const std::vector<std::string>& paths) const;

 private:
  const Clock& clock_;
  SharedFile<std::vector<Acknowledgement>> file_;
};

}  // namespace cirrovane
