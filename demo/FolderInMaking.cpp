#include "demo/FolderInMaking.h"

#include "demo/AtomicFile.h"
#include "demo/CloudAttribute.h"
#include "demo/Failure.h"
#include "demo/Text.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>

namespace cirrovane::demo {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMarkerName = ".cirrovane-demo-mac";
constexpr std::string_view kMarkerLine = "This folder is a demo Mac, made by cirrovane-demo-mac.";
constexpr std::string_view kMarkerRest = "\nIts command \"create\" removes everything in here and makes it anew.\n";

/// The folder, once it is known that filling it harms nobody.
const fs::path& usable(const fs::path& folder) {
  if (!fs::exists(fs::symlink_status(folder))) {
    return folder;
  }
  if (!fs::is_directory(folder)) {
    throw CouldNot(printable(folder.native()) + " is no folder. Name a new or an empty one.");
  }
  if (!fs::is_empty(folder) && !isDemoMac(folder)) {
    throw CouldNot(printable(folder.native()) +
                   " is not empty and no demo Mac, so it was left alone. Name a new or an empty folder.");
  }
  return folder;
}

/// The last one first.
void removeEmptyFolders(std::vector<fs::path>& folders) {
  std::error_code ignored;
  for (; !folders.empty(); folders.pop_back()) {
    fs::remove(folders.back(), ignored);
  }
}

/// Listed to the end first, since the caller changes the folder.
std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    entries.push_back(entry.path());
  }
  return entries;
}

}  // namespace

bool isDemoMac(const fs::path& folder) {
  const fs::path marker = folder / kMarkerName;
  std::error_code ignored;
  if (!fs::is_regular_file(fs::symlink_status(marker, ignored))) {
    return false;
  }
  std::ifstream file(marker);
  std::string line;
  return std::getline(file, line) && line == kMarkerLine;
}

NewFolders::NewFolders(const fs::path& folder) {
  std::vector<fs::path> missing;
  for (fs::path path = folder; !fs::exists(path) && path.has_relative_path(); path = path.parent_path()) {
    missing.push_back(path);
  }
  for (; !missing.empty(); missing.pop_back()) {
    std::error_code error;
    if (!fs::create_directory(missing.back(), error) && error) {
      // A constructor that throws gets no destructor.
      const std::string reason = error.message();
      removeEmptyFolders(made_);
      throw CouldNot(printable(missing.back().native()) + " cannot be made: " + reason + ".");
    }
    made_.push_back(missing.back());
  }
}

NewFolders::~NewFolders() {
  removeEmptyFolders(made_);
}

Marker::Marker(const fs::path& folder) : path_(folder / kMarkerName), isNew_(!isDemoMac(folder)) {
  if (isNew_) {
    writeAtomically(path_, std::string(kMarkerLine) + std::string(kMarkerRest), kPublicFile);
  }
}

Marker::~Marker() {
  if (isNew_) {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
}

WorkFolder::WorkFolder(const fs::path& parent) {
  std::string name = parent / ".in-making-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    throw CouldNot("Nothing can be made in " + printable(parent.native()) + ": " + systemMessage(errno) + ".");
  }
  path_ = name;
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

FolderInMaking::FolderInMaking(const fs::path& folder)
    : folder_(usable(folder)), newFolders_(folder_), marker_(folder_), work_(folder_) {
  requireCloudStates(work_.path());
}

void FolderInMaking::finish() {
  // From here on the folder must be known for what it is, so that making it can be tried again.
  newFolders_.keep();
  marker_.keep();
  for (const fs::path& entry : entriesOf(folder_)) {
    if (entry != work_.path() && entry.filename() != kMarkerName) {
      fs::remove_all(entry);
    }
  }
  for (const fs::path& entry : entriesOf(work_.path())) {
    fs::rename(entry, folder_ / entry.filename());
  }
}

}  // namespace cirrovane::demo
