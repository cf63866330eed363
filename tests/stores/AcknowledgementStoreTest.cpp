#include "stores/AcknowledgementStore.h"
#include "tests/stores/StoreFixture.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AcknowledgementStoreTest : public StoreTest {
 protected:
  AcknowledgementStoreTest() { clock_.set(Time(std::chrono::seconds(1'763'231'000))); }

  AcknowledgementStore store() const { return {fileSystem_, storage_, clock_}; }
  std::vector<std::string> paths() const {
    std::vector<std::string> paths;
    for (const Acknowledgement& one : store().current()) {
      paths.push_back(one.path);
    }
    return paths;
  }
};

TEST_F(AcknowledgementStoreTest, fresh_isEmptyAndWritesNothing) {
  EXPECT_THAT(store().current(), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(storePath("acknowledged.json")));
}

TEST_F(AcknowledgementStoreTest, acknowledged_isKeptByTheBytesOfThePath) {
  EXPECT_EQ(store().acknowledge({"/x/b", "/x/a/", "/x/B"}, std::nullopt), std::nullopt);
  EXPECT_THAT(paths(), ElementsAre("/x/B", "/x/a", "/x/b"));
  EXPECT_EQ(readFile(storePath("acknowledged.json")), R"([
  {
    "acknowledgedAt": "2025-11-15T18:23:20Z",
    "path": "/x/B"
  },
  {
    "acknowledgedAt": "2025-11-15T18:23:20Z",
    "path": "/x/a"
  },
  {
    "acknowledgedAt": "2025-11-15T18:23:20Z",
    "path": "/x/b"
  }
]
)");
}

TEST_F(AcknowledgementStoreTest, expired_isLeftOutAndDropped) {
  const Time end = clock_.now() + std::chrono::days(1);
  EXPECT_EQ(store().acknowledge({"/x/a"}, end), std::nullopt);
  clock_.set(end - std::chrono::microseconds(1));
  EXPECT_THAT(paths(), ElementsAre("/x/a"));
  clock_.set(end);
  EXPECT_THAT(paths(), IsEmpty());
  EXPECT_EQ(store().acknowledge({"/x/b"}, std::nullopt), std::nullopt);
  EXPECT_EQ(readFile(storePath("acknowledged.json")).find("/x/a"), std::string::npos);
}

TEST_F(AcknowledgementStoreTest, acknowledgedAgain_takesTheNewEnd) {
  EXPECT_EQ(store().acknowledge({"/x/a"}, clock_.now() + std::chrono::days(1)), std::nullopt);
  EXPECT_EQ(store().acknowledge({"/x/a"}, std::nullopt), std::nullopt);
  ASSERT_EQ(store().current().size(), 1U);
  EXPECT_EQ(store().current().front().expiresAt, std::nullopt);
}

TEST_F(AcknowledgementStoreTest, forget_takesExactlyThePathsBack) {
  EXPECT_EQ(store().acknowledge({"/x/a", "/x/a/b"}, std::nullopt), std::nullopt);
  EXPECT_EQ(store().forget({"/x/a/"}), std::nullopt);
  EXPECT_THAT(paths(), ElementsAre("/x/a/b"));
}

TEST_F(AcknowledgementStoreTest, forgetOfWhatWasNotAcknowledged_failsAndChangesNothing) {
  EXPECT_EQ(store().acknowledge({"/x/a"}, std::nullopt), std::nullopt);
  const auto failure = store().forget({"/x/a", "/x/b"});
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->message, "/x/b is not acknowledged.");
  EXPECT_THAT(paths(), ElementsAre("/x/a"));
}

TEST_F(AcknowledgementStoreTest, programsSideBySide_loseNothingOfEachOther) {
  constexpr int kEach = 40;
  std::vector<pid_t> children;
  for (const std::string name : {"a", "b", "c"}) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      int failures = 0;
      for (int number = 0; number < kEach; ++number) {
        failures += store().acknowledge({"/" + name + std::to_string(number)}, std::nullopt) ? 1 : 0;
      }
      _exit(failures);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(store().current().size(), 3U * kEach);
}

}  // namespace
}  // namespace cirrovane::test
