#include "platform/macos/plain/Owned.h"

#include <utility>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

/// Something with a count of its releases, as a framework's objects have of their owners.
struct Counted {
  int releases = 0;
};

void releaseCounted(Counted* counted) {
  ++counted->releases;
}

using OwnedCounted = Owned<Counted*, releaseCounted>;

TEST(Owned, end_releasesOnce) {
  Counted counted;
  {
    const OwnedCounted owner(&counted);
    EXPECT_TRUE(owner);
    EXPECT_EQ(owner.get(), &counted);
    EXPECT_EQ(counted.releases, 0);
  }
  EXPECT_EQ(counted.releases, 1);
}

TEST(Owned, nothing_isNotReleased) {
  const OwnedCounted owner;
  EXPECT_FALSE(owner);
  EXPECT_EQ(owner.get(), nullptr);
}

TEST(Owned, move_handsTheReleaseOn) {
  Counted counted;
  {
    OwnedCounted first(&counted);
    const OwnedCounted second(std::move(first));
    EXPECT_EQ(second.get(), &counted);
  }
  EXPECT_EQ(counted.releases, 1);
}

TEST(Owned, assignment_releasesBothOnceInTheEnd) {
  Counted left;
  Counted right;
  {
    OwnedCounted first(&left);
    OwnedCounted second(&right);
    first = std::move(second);
    EXPECT_EQ(first.get(), &right);
  }
  EXPECT_EQ(left.releases, 1);
  EXPECT_EQ(right.releases, 1);
}

}  // namespace
}  // namespace cirrovane
