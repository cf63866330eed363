#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace cirrovane::test {

/// What a tree holds, by path below it: content and cloud state of each file, cloud state of each folder.
using TreeContent = std::map<std::string, std::pair<std::string, std::optional<std::string>>>;

/// The cloud state of one item; absent when it has none.
std::optional<std::string> iCloudAttribute(const std::string& path);
TreeContent treeContent(const std::string& folder);
/// Seconds since 1970.
double modifiedAt(const std::string& path);
bool exists(const std::string& path);
/// The permission bits.
unsigned permissions(const std::string& path);
/// The paths of the entries of a watchlist.
std::vector<std::string> pathsOf(const nlohmann::json& watchlist);
/// The reasons of a report's blockers.
std::set<std::string> reasonsOf(const nlohmann::json& report);

/// Runs the real programs on a demo Mac in a folder of the test's own.
class DemoMacTest : public ::testing::Test {
 protected:
  /// Where the demo Mac is or will be; not made yet.
  const std::string& root() const { return root_; }
  std::string home() const { return root_ + "/Users/demo"; }
  std::string drive() const { return home() + "/Library/Mobile Documents/com~apple~CloudDocs"; }
  std::string missingFolder() const { return drive() + "/Travel Documents"; }
  std::string outsideFolder() const { return home() + "/Desktop/Scratch"; }
  std::string watchlistFile() const;
  nlohmann::json watchlist() const { return nlohmann::json::parse(readFile(watchlistFile())); }
  void writeWatchlist(const nlohmann::json& watchlist) const { writeFile(watchlistFile(), watchlist.dump(2)); }

  ChildResult demo(const std::vector<std::string>& arguments, const ChildOptions& options = {}) const;
  /// Runs one command on the demo Mac, which must succeed.
  ChildResult succeed(const std::string& command) const;
  /// Runs a command of the Mac's own by its path on that Mac, with a Mac's PATH unless told another one.
  ChildResult onMac(const std::string& path, const std::vector<std::string>& arguments,
                    ChildOptions options = {}) const;
  ChildResult check(const std::vector<std::string>& folders = {}) const;
  nlohmann::json report(const std::vector<std::string>& folders = {}) const;

  /// Runs a script with a file system of the given type mounted on `folder` for its time alone: $0 is the program, $1
  /// the folder. Absent where this user may not mount.
  std::optional<ChildResult> demoOnMount(const std::string& mountArguments, const std::string& folder,
                                         const std::string& script) const;

  TemporaryFolder folder_{CIRROVANE_TEST_DIR};

 private:
  std::string root_ = folder_ / "Mac";
};

}  // namespace cirrovane::test
