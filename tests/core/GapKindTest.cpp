#include "core/GapKind.h"

#include <set>
#include <string_view>

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

TEST(GapKind, rawValue_comesBackAsItsKind) {
  for (const GapKind kind : kAllGapKinds) {
    GapKind read = kind == GapKind::excluded ? GapKind::filesLost : GapKind::excluded;
    EXPECT_TRUE(fromRawValue(rawValue(kind), read));
    EXPECT_EQ(read, kind);
  }
}

TEST(GapKind, unknownText_leavesTheTarget) {
  GapKind kind = GapKind::syncPaused;
  EXPECT_FALSE(fromRawValue("Excluded", kind));
  EXPECT_EQ(kind, GapKind::syncPaused);
}

TEST(GapKind, words_areEachKindsOwn) {
  std::set<std::string_view> titles;
  for (const GapKind kind : kAllGapKinds) {
    titles.insert(displayTitle(kind));
    EXPECT_TRUE(meaningOf(kind).ends_with('.'));
    EXPECT_TRUE(remedyFor(kind).ends_with('.'));
  }
  EXPECT_EQ(titles.size(), kAllGapKinds.size());
}

TEST(GapKind, whatWaitingCanChange_isWhatIsOnItsWay) {
  for (const GapKind kind : kAllGapKinds) {
    const bool isOnItsWay =
        kind == GapKind::pendingPackage || kind == GapKind::pendingHidden || kind == GapKind::syncPaused;
    EXPECT_EQ(canClose(kind), isOnItsWay) << rawValue(kind);
  }
}

}  // namespace
}  // namespace cirrovane
