#pragma once

#include "coordinator/LiveRules.h"
#include "coordinator/PendingChanges.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// Folders that a full scan found otherwise than the watch had told. A change in the last moment of a scan is told just
/// after it, so they are given a second to be told of before the watch counts as one that misses things.
class Suspects {
 public:
  /// In place of those before.
  void suspect(std::vector<std::string> folders, Uptime now);
  void told(const std::vector<FolderChange>& changes, Uptime now);
  /// Everything is looked at anew anyway.
  void clear();

  /// When to judge; absent without a suspect.
  std::optional<Uptime> due() const;
  /// Whether one of them was never told of; ends the suspicion. Absent before its time.
  std::optional<bool> judge(Uptime now);

 private:
  std::vector<std::string> folders_;
  Uptime since_{0};
  PendingChanges told_;
};

}  // namespace cirrovane
