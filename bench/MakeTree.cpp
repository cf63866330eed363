// Makes the trees that the benchmarks walk: empty files, evenly over folders, all in the same cloud state. Names have
// the same length everywhere, so that the size of one path tells that of all.

#include "base/FileDescriptor.h"
#include "platform/linux/walk/ICloudAttribute.h"

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using std::filesystem::path;

struct Tree {
  path folder;
  std::size_t fileCount = 0;
  /// 0: the files lie in the tree's folder itself.
  std::size_t folderCount = 0;
  std::string_view state;
  /// Besides those: hidden files, evenly over the folders, and packages with so many files each.
  std::size_t hiddenCount = 0;
  std::size_t packageCount = 0;
};

constexpr std::size_t kFilesPerPackage = 100;

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

std::size_t numberOf(std::string_view text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw std::invalid_argument(fmt::format("Not a number: {}", text));
  }
  return number;
}

std::string_view attributeOf(std::string_view state) {
  if (state == "clean") {
    return "isUploaded=true\ndownloadingStatus=current";
  }
  if (state == "pending") {
    return "isUploaded=false\ndownloadingStatus=current";
  }
  if (state == "elsewhere") {
    return "isUbiquitous=false";
  }
  throw std::invalid_argument(fmt::format("Not a state: {}", state));
}

void fill(const path& folder, std::size_t firstFile, std::size_t endFile, std::string_view attribute,
          std::string_view prefix = "document") {
  const FileDescriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() < 0) {
    fail(folder);
  }
  for (std::size_t index = firstFile; index < endFile; ++index) {
    const std::string name = fmt::format("{}-{:07}.txt", prefix, index);
    const FileDescriptor file(openat(directory.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (file.get() < 0 || fsetxattr(file.get(), kICloudAttributeName, attribute.data(), attribute.size(), 0) != 0) {
      fail(folder / name);
    }
  }
}

void setAttribute(const path& item, std::string_view attribute) {
  if (setxattr(item.c_str(), kICloudAttributeName, attribute.data(), attribute.size(), 0) != 0) {
    fail(item);
  }
}

void make(const Tree& tree) {
  const std::string_view attribute = attributeOf(tree.state);
  std::filesystem::create_directories(tree.folder);
  if (tree.folderCount == 0) {
    fill(tree.folder, 0, tree.fileCount, attribute);
    return;
  }
  for (std::size_t index = 0; index < tree.folderCount; ++index) {
    const path folder = tree.folder / fmt::format("folder-{:05}", index);
    std::filesystem::create_directory(folder);
    fill(folder, tree.fileCount * index / tree.folderCount, tree.fileCount * (index + 1) / tree.folderCount, attribute);
    fill(folder, tree.hiddenCount * index / tree.folderCount, tree.hiddenCount * (index + 1) / tree.folderCount,
         attribute, ".settings");
  }
  for (std::size_t index = 0; index < tree.packageCount; ++index) {
    const path folder = tree.folder / fmt::format("folder-{:05}", index % tree.folderCount);
    const path package = folder / fmt::format("song-{:05}.logicx", index);
    std::filesystem::create_directory(package);
    setAttribute(package, attribute);
    fill(package, 0, kFilesPerPackage, attribute, "take");
  }
}

/// Says beside the tree, so that it is no part of it, what the tree is; written last, when the tree is whole.
class Label {
 public:
  explicit Label(const Tree& tree)
      : file_(tree.folder.native() + ".made"),
        text_(fmt::format("{} files, {} folders, {}, {} hidden, {} packages", tree.fileCount, tree.folderCount,
                          tree.state, tree.hiddenCount, tree.packageCount)) {}

  bool isThere() const {
    std::ifstream stream(file_);
    std::string line;
    return std::getline(stream, line) && line == text_;
  }
  void remove() const { std::filesystem::remove(file_); }
  void write() const { std::ofstream(file_) << text_ << '\n'; }

 private:
  path file_;
  std::string text_;
};

int makeUnlessMade(const Tree& tree) {
  const Label label(tree);
  if (label.isThere()) {
    return 0;
  }
  std::cerr << fmt::format("Making {}\n", tree.folder.filename().native());
  label.remove();
  std::filesystem::remove_all(tree.folder);
  make(tree);
  label.write();
  return 0;
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  if (argumentCount != 5 && argumentCount != 7) {
    std::cerr
        << "Usage: make_tree FOLDER FILES FOLDERS clean|pending|elsewhere [HIDDEN PACKAGES]\n"
           "Replaces FOLDER unless it is such a tree already. With 0 FOLDERS all files lie in FOLDER; then there\n"
           "is nothing hidden and no package.\n";
    return 2;
  }
  try {
    return cirrovane::makeUnlessMade({arguments[1], cirrovane::numberOf(arguments[2]),
                                      cirrovane::numberOf(arguments[3]), arguments[4],
                                      argumentCount == 7 ? cirrovane::numberOf(arguments[5]) : 0,
                                      argumentCount == 7 ? cirrovane::numberOf(arguments[6]) : 0});
  } catch (const std::exception& error) {
    std::cerr << "make_tree: " << error.what() << '\n';
    return 1;
  }
}
