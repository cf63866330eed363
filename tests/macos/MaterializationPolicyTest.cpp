#include "platform/macos/plain/MaterializationPolicy.h"

#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kDefault = 0;
constexpr int kOn = 2;

/// A thread whose policy a test can see, on a system that may refuse.
class FakeCalls final : public MaterializationCalls {
 public:
  std::optional<int> current = kDefault;
  bool accepts = true;
  mutable std::vector<int> set;

  std::optional<int> policy(PolicyScope scope) const override {
    EXPECT_EQ(scope, PolicyScope::thread);
    return set.empty() ? current : set.back();
  }
  bool setPolicy(PolicyScope scope, int policy) const override {
    EXPECT_EQ(scope, PolicyScope::thread);
    if (accepts) {
      set.push_back(policy);
    }
    return accepts;
  }
};

TEST(NoMaterialization, guard_forbidsAndGivesBackTheFormerPolicy) {
  FakeCalls calls;
  calls.current = kOn;
  {
    const NoMaterialization guard(calls);
    EXPECT_TRUE(guard.isInForce());
    EXPECT_THAT(calls.set, ElementsAre(kMaterializationOff));
  }
  EXPECT_THAT(calls.set, ElementsAre(kMaterializationOff, kOn));
}

TEST(NoMaterialization, guardWithinGuard_leavesTheEndToTheOuterOne) {
  const FakeCalls calls;
  {
    const NoMaterialization outer(calls);
    {
      const NoMaterialization inner(calls);
      EXPECT_TRUE(inner.isInForce());
    }
    EXPECT_EQ(calls.policy(PolicyScope::thread), kMaterializationOff);
  }
  EXPECT_THAT(calls.set, ElementsAre(kMaterializationOff, kDefault));
}

TEST(NoMaterialization, systemThatRefuses_isNotInForceAndNothingIsGivenBack) {
  FakeCalls calls;
  calls.accepts = false;
  {
    const NoMaterialization guard(calls);
    EXPECT_FALSE(guard.isInForce());
    calls.accepts = true;
  }
  EXPECT_THAT(calls.set, IsEmpty());
}

TEST(NoMaterialization, formerPolicyUnknown_isNotInForceAndNothingIsSet) {
  FakeCalls calls;
  calls.current = std::nullopt;
  {
    const NoMaterialization guard(calls);
    EXPECT_FALSE(guard.isInForce());
  }
  EXPECT_THAT(calls.set, IsEmpty());
}

}  // namespace
}  // namespace cirrovane
