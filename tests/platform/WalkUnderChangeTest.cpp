#include "tests/platform/WalkedItems.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

namespace fs = std::filesystem;

/// Changes a tree on a thread of its own, round after round, until its end.
class Churn {
 public:
  explicit Churn(std::function<void(int)> round)
      : thread_([this, round = std::move(round)] {
          for (int number = 0; !isStopping_; ++number) {
            round(number);
            ++rounds_;
            rounds_.notify_all();
          }
        }) {}
  ~Churn() {
    isStopping_ = true;
    thread_.join();
  }
  Churn(const Churn&) = delete;
  Churn& operator=(const Churn&) = delete;

  void waitForFirstRound() const { rounds_.wait(0); }
  int rounds() const { return rounds_; }

 private:
  std::atomic<int> rounds_ = 0;
  std::atomic<bool> isStopping_ = false;
  std::thread thread_;
};

class WalkUnderChange : public testing::TestWithParam<WalkKind> {
 protected:
  static constexpr int kFolders = 8;
  static constexpr int kFiles = 5;
  static constexpr int kLeastRounds = 10;
  static constexpr int kLeastWalks = 5;

  void SetUp() override {
    for (int index = 0; index < kFolders; ++index) {
      for (int file = 0; file < kFiles; ++file) {
        const std::string path = stableFolder(index) + fmt::format("/stable {}", file);
        writeFile(path);
        setICloudAttribute(path, "isUploaded=false");
        stable_.push_back(path);
      }
    }
    writeFile(outside_ / "secret");
  }

  std::string stableFolder(int index) const { return folder_ / fmt::format("folder {}/below", index % kFolders); }

  /// Walks until the tree has changed often enough, and holds every walk to what did not change.
  void walkDuring(const Churn& churn) const {
    churn.waitForFirstRound();
    for (int walks = 0; walks < kLeastWalks || churn.rounds() < kLeastRounds; ++walks) {
      std::map<std::string, int> timesSeen;
      for (const WalkedItem& item : walked(GetParam(), folder_.path())) {
        ++timesSeen[item.path];
        ASSERT_NE(item.name, "secret") << item.path;
        if (item.name.starts_with("stable")) {
          ASSERT_TRUE(item.values) << item.path;
          ASSERT_EQ(item.values->isUploaded, false) << item.path;
        }
      }
      for (const std::string& path : stable_) {
        ASSERT_EQ(timesSeen[path], 1) << path;
      }
    }
  }

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  const TemporaryFolder outside_{CIRROVANE_TEST_DIR};
  std::vector<std::string> stable_;
};

INSTANTIATE_TEST_SUITE_P(All, WalkUnderChange, testing::ValuesIn(allWalkKinds()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WalkUnderChange, filesAddedRemovedAndRenamed_leaveTheOthersSeenOnce) {
  const Churn churn([this](int round) {
    for (int index = 0; index < kFolders; ++index) {
      const std::string passing = stableFolder(index) + "/passing";
      writeFile(passing);
      std::error_code ignored;
      fs::rename(passing, stableFolder(index + 1) + fmt::format("/moved {}", round % 3), ignored);
      if (round % 3 == 2) {
        fs::remove(stableFolder(index) + fmt::format("/moved {}", index % 3), ignored);
      }
    }
  });
  walkDuring(churn);
}

TEST_P(WalkUnderChange, statesChanged_leaveTheOthersSeenOnce) {
  for (int index = 0; index < kFolders; ++index) {
    writeFile(stableFolder(index) + "/changing");
  }
  const Churn churn([this](int round) {
    for (int index = 0; index < kFolders; ++index) {
      const std::string path = stableFolder(index) + "/changing";
      setICloudAttribute(path, "uploadingError=" + std::string(static_cast<std::size_t>(round % 2 * 2000), 'e'));
    }
  });
  walkDuring(churn);
}

TEST_P(WalkUnderChange, foldersRemovedAndMadeAnew_leaveTheOthersSeenOnce) {
  const Churn churn([this](int) {
    for (int index = 0; index < kFolders; ++index) {
      const std::string passing = stableFolder(index) + "/passing";
      makeFolder(passing + "/deep/deeper");
      writeFile(passing + "/deep/file");
      fs::remove_all(passing);
    }
  });
  walkDuring(churn);
}

TEST_P(WalkUnderChange, foldersMoved_leaveTheOthersSeenOnce) {
  makeFolder(stableFolder(0) + "/passing/deep/deeper");
  writeFile(stableFolder(0) + "/passing/deep/file");
  const Churn churn([this](int) {
    for (int index = 0; index < kFolders; ++index) {
      fs::rename(stableFolder(index) + "/passing", stableFolder(index + 1) + "/passing");
    }
  });
  walkDuring(churn);
}

TEST_P(WalkUnderChange, folderReplacedByALink_isNeverLeftThroughIt) {
  for (int index = 0; index < kFolders; ++index) {
    makeFolder(stableFolder(index) + "/switching");
    fs::create_directory_symlink(outside_.path(), stableFolder(index) + "/.link");
  }
  const Churn churn([this](int) {
    for (int index = 0; index < kFolders; ++index) {
      // The two change places in one step, so that the name is never free.
      const std::string link = stableFolder(index) + "/.link";
      const std::string name = stableFolder(index) + "/switching";
      EXPECT_EQ(renameat2(AT_FDCWD, link.c_str(), AT_FDCWD, name.c_str(), RENAME_EXCHANGE), 0);
    }
  });
  walkDuring(churn);
}

/// Takes the first batch of a walk, does something to the tree, and takes the rest.
std::vector<WalkedItem> walkedAround(const WalkKind& kind, const std::string& folder,
                                     const std::function<void()>& change) {
  const auto walk = kind.start(folder);
  EXPECT_NE(walk->next(), nullptr);
  change();
  return restOf(*walk);
}

TEST_P(WalkUnderChange, wholeTreeRemovedInTheMiddle_endsTheWalk) {
  walkedAround(GetParam(), folder_.path(), [this] {
    for (int index = 0; index < kFolders; ++index) {
      fs::remove_all(folder_ / fmt::format("folder {}", index));
    }
  });
  EXPECT_THAT(walked(GetParam(), folder_.path()), testing::IsEmpty());
}

TEST_P(WalkUnderChange, watchedFolderRenamedInTheMiddle_endsTheWalk) {
  const std::string watched = folder_ / "folder 3";
  walkedAround(GetParam(), watched, [&] { fs::rename(watched, folder_ / "renamed"); });
  EXPECT_THAT(walked(GetParam(), watched), testing::IsEmpty());
}

TEST_P(WalkUnderChange, subfolderReplacedByAFileInTheMiddle_isPassedOver) {
  const auto rest = walkedAround(GetParam(), folder_.path(), [this] {
    for (int index = 0; index < kFolders; ++index) {
      fs::remove_all(folder_ / fmt::format("folder {}", index));
      writeFile(folder_ / fmt::format("folder {}", index));
    }
  });
  for (const WalkedItem& item : rest) {
    EXPECT_TRUE(item.name == "below" || item.name.starts_with("stable")) << item.path;
  }
}

}  // namespace
}  // namespace cirrovane::test
