#pragma once

#include "platform/linux/host/HostDisk.h"
#include "platform/linux/walk/LinuxFileSystem.h"
#include "platform/linux/watch/InotifyWatch.h"
#include "tests/support/NotedFolderNews.h"
#include "tests/support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {

/// Real folders with a watch over them.
class WatchedDisk : public testing::Test {
 protected:
  WatchedDisk();
  ~WatchedDisk() override;

  /// A path in the test's own folder.
  std::string at(const std::string& name) const { return folder_ / name; }

  /// A fresh watch over these folders, which are walked once it stands or was refused. What it told until then.
  NotedFolderNews::News watch(const std::vector<std::string>& folders, InotifyCalls calls = {});
  /// Walks over the folder and has the watch told.
  void walk(const std::string& folder, bool isDeep = true);
  /// All that the watch told since the last call, once it has proved to be alive or refused to.
  NotedFolderNews::News news();
  /// Only the changes, as texts: "FOLDER ITEM", or "FOLDER/**" for all below. Paths are below the test's own folder.
  std::vector<std::string> changes();
  std::vector<std::string> texts(const std::vector<FolderChange>& changes) const;
  /// Whether a file that is written there is told of, and nothing else.
  testing::AssertionResult tellsOfFileIn(const std::string& folder);

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  NotedFolderNews noted_;
  LinuxFileSystem files_{hostFolders(), hostVolume};
  std::unique_ptr<InotifyWatch> watch_;
};

/// Renames a file or folder; fails the test where that is refused.
void renameItem(const std::string& from, const std::string& to);
/// Removes a file, or a folder with all in it.
void removeItem(const std::string& path);
void makeLink(const std::string& target, const std::string& path);

}  // namespace cirrovane::test
