#pragma once

#include "base/JSONRecord.h"
#include "base/UUID.h"

#include <string>
#include <tuple>

namespace cirrovane {

/// One folder that the user marked as critical.
struct WatchFolder {
  /// Identity of the entry; stays the same when it is renamed.
  UUID id;
  /// Display name.
  std::string name;
  /// Absolute path as the user chose it, trailing slash and all.
  std::string path;

  static constexpr auto jsonFields() {
    return std::tuple{JSONField{"id", &WatchFolder::id}, JSONField{"name", &WatchFolder::name},
                      JSONField{"path", &WatchFolder::path}};
  }
  friend bool operator==(const WatchFolder&, const WatchFolder&) = default;
};

}  // namespace cirrovane
