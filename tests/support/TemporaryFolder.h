#pragma once

#include <string>

namespace cirrovane::test {

/// An empty folder of a test's own, below the build folder, removed with all it holds at the end. However deep the test
/// makes it, and whatever permissions it takes away.
class TemporaryFolder {
 public:
  /// Made below `parent`, which the test program knows as CIRROVANE_TEST_DIR.
  explicit TemporaryFolder(const std::string& parent);
  ~TemporaryFolder();

  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Absolute, without a trailing slash.
  const std::string& path() const { return path_; }

  /// The path of something inside.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// Writes a file, with all the folders above it.
void writeFile(const std::string& path, const std::string& content = "");
/// The whole content of a file; empty when there is none.
std::string readFile(const std::string& path);
/// Makes a folder and all the folders above it.
void makeFolder(const std::string& path);
/// Sets a file's modification date, in seconds since 1970.
void setModified(const std::string& path, double seconds);

}  // namespace cirrovane::test
