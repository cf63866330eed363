#pragma once

#include <cstddef>
#include <string>

namespace cirrovane {

/// Far beyond any file that this program writes, or is described by.
inline constexpr std::size_t kBearableFileSize = std::size_t{64} << 20U;

/// What came of reading a file.
struct BoundedRead {
  /// All of the file's bytes; none when there is an error.
  std::string content;
  /// Why the file was not read; 0 when it was. EINVAL for what is no regular file, EFBIG for one beyond the limit.
  int error = 0;
  /// Whether something lies at the path that may be read.
  bool isOpen = false;
};

/// The content of a regular file of at most `limit` bytes. What else may lie at a path can block its reader or never
/// end; a file that grows while it is read is read to its new end.
BoundedRead readBounded(const std::string& path, std::size_t limit);

}  // namespace cirrovane
