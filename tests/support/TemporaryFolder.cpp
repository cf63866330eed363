#include "tests/support/TemporaryFolder.h"

#include "tests/support/ChildProcess.h"

#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace cirrovane::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder(const std::string& parent) {
  fs::create_directories(parent);
  path_ = parent + "/XXXXXX";
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::runtime_error("no temporary folder in " + parent);
  }
}

TemporaryFolder::~TemporaryFolder() {
  // rm goes down by descriptors, so it also removes what no path is short enough to name.
  runProgram("/bin/chmod", {"-R", "u+rwX", path_});
  runProgram("/bin/rm", {"-rf", path_});
}

void writeFile(const std::string& path, const std::string& content) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + path);
  }
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void makeFolder(const std::string& path) {
  fs::create_directories(path);
}

void setModified(const std::string& path, double seconds) {
  const double whole = std::floor(seconds);
  const timespec stamp{static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
  const timespec times[] = {stamp, stamp};
  if (utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0) {
    throw std::runtime_error("no date on " + path);
  }
}

}  // namespace cirrovane::test
