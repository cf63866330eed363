#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace cirrovane {

/// One event as inotify writes it.
struct InotifyRecord {
  int watch = -1;
  std::uint32_t mask = 0;
  /// Name within the watched folder; empty when the event is about the folder itself. Lies in the bytes read.
  std::string_view name;
};

/// Takes the next record off the front of what was read. Absent at the end, and where the rest is no whole record,
/// which then stays.
std::optional<InotifyRecord> takeInotifyRecord(std::string_view& bytes);

}  // namespace cirrovane
