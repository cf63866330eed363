#pragma once

#include <functional>
#include <memory>

namespace cirrovane {

/// The system's framework for updates, running. Main thread only.
class Updater {
 public:
  virtual ~Updater() = default;
  /// Looks for an update; whatever is found, the framework shows to the user itself.
  virtual void checkForUpdates() = 0;
};

/// Starts the framework; gives nullptr on a system that has none.
using UpdaterFactory = std::function<std::unique_ptr<Updater>()>;

}  // namespace cirrovane
