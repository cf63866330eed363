#include "demo/DemoMac.h"

#include "base/UTF8.h"
#include "demo/CloudAttribute.h"
#include "demo/Failure.h"
#include "demo/FileCounts.h"
#include "demo/FolderInMaking.h"
#include "demo/MacCommands.h"
#include "demo/MachineFacts.h"
#include "demo/Network.h"
#include "demo/RunningProcesses.h"
#include "demo/SampleContent.h"
#include "demo/SampleFiles.h"
#include "demo/SampleWatchlist.h"
#include "demo/Text.h"
#include "demo/Watchlist.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

namespace cirrovane::demo {
namespace {

namespace fs = std::filesystem;

constexpr const char* kHome = "Users/demo";
/// What the application looks for in a path to tell whether it lies in iCloud Drive.
constexpr std::string_view kDriveMark = "/Library/Mobile Documents/com~apple~CloudDocs";
constexpr std::string_view kContainersMark = "/Library/Mobile Documents/";

bool holds(const fs::path& path, std::string_view mark) {
  return path.native().find(mark) != std::string::npos;
}

bool isBelow(const fs::path& path, const fs::path& folder) {
  return path.lexically_normal().native().starts_with(folder.native() + "/");
}

void requireGoodName(const fs::path& root) {
  if (!isValidUTF8(root.native())) {
    throw CouldNot("The name of " + printable(root.native()) +
                   " is not UTF-8, which a watchlist cannot hold. Use another folder.");
  }
  if (holds(root, kContainersMark)) {
    throw CouldNot(
        printable(root.native()) +
        " lies in a folder of iCloud Drive, so nothing on the demo Mac would be outside. Use another folder.");
  }
}

void writeSampleFile(const fs::path& path, const SampleFile& sample) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << sampleContent(sample.path, sample.size);
  file.close();
  if (!file) {
    throw CouldNot(printable(path.native()) + " cannot be written. Is there space on the disk?");
  }
}

/// Writes what is not there, and gives all of it the states and ages of the sample. A file that a person changed keeps
/// what it holds, and whatever else took a file's name stays.
void placeSamples(const fs::path& home) {
  const auto now = fs::file_time_type::clock::now();
  for (const SampleFile& sample : sampleFiles()) {
    const fs::path path = home / sample.path;
    const fs::file_status status = fs::symlink_status(path);
    if (!fs::exists(status)) {
      writeSampleFile(path, sample);
    } else if (!fs::is_regular_file(status)) {
      continue;
    }
    writeCloudState(path, cloudStateOf(sample));
    fs::last_write_time(path, now - sample.age);
  }
  for (const SampleFolder& folder : sampleFolders()) {
    fs::create_directories(home / folder.path);
    writeCloudState(home / folder.path, folder.state);
  }
}

bool liesInCloud(const fs::path& path, const fs::path& root) {
  return path.native().find(kContainersMark, root.native().size()) != std::string::npos;
}

/// What the Finder keeps beside files.
bool isFindersOwn(const std::string& name) {
  return name == ".DS_Store" || name == ".localized" || name.starts_with("._");
}

/// The files that a Mac would send to iCloud without being asked.
bool belongsInCloud(const fs::path& path, const fs::file_status& status, const fs::path& root) {
  return fs::is_regular_file(status) && !isFindersOwn(path.filename().native()) && liesInCloud(path, root);
}

/// Whether there was something to settle.
bool settleItem(const fs::path& path, const fs::file_status& status, const fs::path& root) {
  if (!fs::is_regular_file(status) && !fs::is_directory(status)) {
    return false;
  }
  const std::optional<CloudState> before = readCloudState(path);
  if (!before && !belongsInCloud(path, status, root)) {
    return false;
  }
  CloudState after = before.value_or(CloudState());
  after.settle();
  if (liesInCloud(path, root)) {
    after.set("isUbiquitous", "");
  }
  if (before && before->text() == after.text()) {
    return false;
  }
  writeCloudState(path, after);
  return true;
}

const WatchedFolder* findSample(const Watchlist& samples, const WatchedFolder& folder) {
  const auto found = std::ranges::find(samples, folder.id, &WatchedFolder::id);
  return found == samples.end() ? nullptr : &*found;
}

bool isSampleFolder(const Watchlist& samples, const WatchedFolder& folder) {
  return std::ranges::any_of(
      samples, [&](const WatchedFolder& sample) { return sample.id == folder.id || sample.path == folder.path; });
}

}  // namespace

DemoMac DemoMac::create(const fs::path& root) {
  requireGoodName(root);
  DemoMac mac(root);
  FolderInMaking folder(root);
  const fs::path home = folder.content() / kHome;
  placeSamples(home);
  writeWatchlist(watchlistPath(home), sampleWatchlist(mac.home()));
  writeSampleFileCounts(fileCountsPath(home), mac.drive());
  writeFacts(folder.content(), sampleFacts());
  placeCommands(folder.content());
  writeSampleProcesses(folder.content());
  setNetwork(folder.content(), true);
  folder.finish();
  return mac;
}

DemoMac DemoMac::open(const fs::path& root) {
  if (!isDemoMac(root)) {
    throw CouldNot(printable(root.native()) + " is no demo Mac. Make one with \"create\" first.");
  }
  return DemoMac(root);
}

fs::path DemoMac::home() const {
  return root_ / kHome;
}

fs::path DemoMac::drive() const {
  return home() / kDriveFolder;
}

Settled DemoMac::settle() {
  Settled settled;
  settled.changedItems = settleItems();
  settleWatchlist(settled);
  forgetSampleFileCounts(fileCountsPath(home()));
  return settled;
}

void DemoMac::unsettle() {
  placeSamples(home());
  restoreWatchlist();
  writeSampleFileCounts(fileCountsPath(home()), drive());
  removeMissingFolder();
}

std::size_t DemoMac::settleItems() const {
  std::size_t changed = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root_)) {
    if (settleItem(entry.path(), entry.symlink_status(), root_)) {
      ++changed;
    }
  }
  return changed;
}

void DemoMac::settleWatchlist(Settled& settled) const {
  const fs::path file = watchlistPath(home());
  std::optional<Watchlist> watchlist = readWatchlist(file);
  if (!watchlist) {
    // The application will watch iCloud Drive, which is settled.
    return;
  }
  const Watchlist samples = sampleWatchlist(home());
  Watchlist kept;
  bool hasChanged = false;
  for (WatchedFolder& folder : *watchlist) {
    // The whole Mac may have been moved or copied.
    if (const WatchedFolder* sample = findSample(samples, folder); sample != nullptr && folder.path != sample->path) {
      folder.path = sample->path;
      hasChanged = true;
    }
    std::error_code ignored;
    const bool exists = fs::exists(folder.path, ignored);
    if (!holds(folder.path, kDriveMark) || (!exists && !isBelow(folder.path, root_))) {
      settled.unwatchedFolders.push_back(folder.path);
      hasChanged = true;
      continue;
    }
    if (!exists) {
      fs::create_directories(folder.path);
      settled.madeFolders.push_back(folder.path);
    }
    kept.push_back(std::move(folder));
  }
  if (hasChanged) {
    writeWatchlist(file, std::move(kept));
  }
}

void DemoMac::restoreWatchlist() const {
  const fs::path file = watchlistPath(home());
  const Watchlist samples = sampleWatchlist(home());
  const std::optional<Watchlist> before = readWatchlist(file);
  Watchlist watchlist = samples;
  if (before) {
    std::ranges::copy_if(*before, std::back_inserter(watchlist),
                         [&](const WatchedFolder& folder) { return !isSampleFolder(samples, folder); });
  }
  writeWatchlist(file, std::move(watchlist));
}

void DemoMac::removeMissingFolder() const {
  const fs::path folder = missingFolder(home());
  std::error_code error;
  fs::remove(folder, error);
  if (error) {
    throw CouldNot("All is as it was at first, but for " + printable(folder.native()) + ", which was to be missing: " +
                   error.message() + ". If files of yours are in it, move them out and unsettle again.");
  }
}

}  // namespace cirrovane::demo
