#pragma once

#include "platform/linux/walk/ICloudAttribute.h"

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <sys/xattr.h>
#include <utility>
#include <vector>

namespace cirrovane {

/// So many files of a tree, evenly over it, in the order of the listing.
inline std::vector<std::filesystem::path> someFiles(const std::string& folder, std::size_t count) {
  std::vector<std::filesystem::path> all;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) {
      all.push_back(entry.path());
    }
  }
  std::vector<std::filesystem::path> some;
  for (std::size_t index = 0; index < count; ++index) {
    some.push_back(all.at(all.size() * index / count));
  }
  return some;
}

/// Makes a file pending, and what it was before at the end.
class PendingFile {
 public:
  explicit PendingFile(std::filesystem::path path) : path_(std::move(path)), former_(4096, '\0') {
    const ssize_t length = getxattr(path_.c_str(), kICloudAttributeName, former_.data(), former_.size());
    if (length <= 0) {
      throw std::runtime_error("a file of the tree has no state");
    }
    former_.resize(static_cast<std::size_t>(length));
    set("isUploaded=false");
  }
  ~PendingFile() { set(former_); }
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

 private:
  void set(std::string_view attribute) const {
    setxattr(path_.c_str(), kICloudAttributeName, attribute.data(), attribute.size(), 0);
  }

  std::filesystem::path path_;
  std::string former_;
};

}  // namespace cirrovane
