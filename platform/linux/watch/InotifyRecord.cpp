#include "platform/linux/watch/InotifyRecord.h"

#include <cstring>
#include <sys/inotify.h>

namespace cirrovane {

std::optional<InotifyRecord> takeInotifyRecord(std::string_view& bytes) {
  inotify_event header{};
  if (bytes.size() < sizeof header) {
    return std::nullopt;
  }
  std::memcpy(&header, bytes.data(), sizeof header);
  if (bytes.size() - sizeof header < header.len) {
    return std::nullopt;
  }
  // The system fills the name up with NULs, so that the next record lies at a round address.
  const std::string_view field = bytes.substr(sizeof header, header.len);
  bytes.remove_prefix(sizeof header + header.len);
  return InotifyRecord{header.wd, header.mask, field.substr(0, field.find('\0'))};
}

}  // namespace cirrovane
