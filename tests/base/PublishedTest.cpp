#include "base/Published.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane {
namespace {

using testing::ElementsAre;

TEST(Published, set_tellsObserversBeforeTheChange) {
  Published<int> number(1);
  std::vector<int> seen;
  const Subscription subscription = number.observe([&](const int& next) {
    seen.push_back(number.value());
    seen.push_back(next);
  });
  number.set(2);
  EXPECT_THAT(seen, ElementsAre(1, 2));
  EXPECT_EQ(number.value(), 2);
}

TEST(Published, endedSubscription_isToldNothing) {
  Published<int> number;
  int calls = 0;
  {
    const Subscription subscription = number.observe([&](int) { ++calls; });
    number.set(1);
  }
  number.set(2);
  EXPECT_EQ(calls, 1);
}

TEST(Published, observerEndedByAnotherInTheMiddle_isToldNothing) {
  Published<int> number;
  int calls = 0;
  Subscription second;
  const Subscription first = number.observe([&](int) { second = Subscription(); });
  second = number.observe([&](int) { ++calls; });
  number.set(1);
  EXPECT_EQ(calls, 0);
}

TEST(Published, observerAddedInTheMiddle_isToldOfTheNextChangeOnly) {
  Published<int> number;
  std::vector<int> seen;
  Subscription late;
  const Subscription first = number.observe([&](int next) {
    if (next == 1) {
      late = number.observe([&](int later) { seen.push_back(later); });
    }
  });
  number.set(1);
  number.set(2);
  EXPECT_THAT(seen, ElementsAre(2));
}

TEST(Published, subscriptionThatOutlivesIt_endsQuietly) {
  Subscription subscription;
  {
    Published<std::string> text;
    subscription = text.observe([](const std::string&) {});
  }
  subscription = Subscription();
}

}  // namespace
}  // namespace cirrovane
