#include "ui/viewmodels/AppTab.h"

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> titlesOf(std::span<const AppTab> tabs) {
  std::vector<std::string> titles;
  for (const AppTab& tab : tabs) {
    titles.emplace_back(tab.title);
  }
  return titles;
}

TEST(AppTab, primaryTabs_areTheFirstSix) {
  EXPECT_THAT(titlesOf(primaryTabs()), ElementsAre("Overview", "Why", "Incidents", "Status", "iCloud", "Finder"));
}

TEST(AppTab, extraTabs_areTheOtherSeven) {
  EXPECT_THAT(titlesOf(extraTabs()),
              ElementsAre("System", "Network", "Storage", "Power", "Performance", "FAQ", "Tools"));
}

TEST(AppTab, initialTab_namedExactly_isThatOne) {
  for (const AppTab& tab : kAppTabs) {
    EXPECT_EQ(initialTab(tab.id).id, tab.id);
  }
}

TEST(AppTab, initialTab_absentOrUnknown_isTheOverview) {
  EXPECT_EQ(initialTab(std::nullopt).id, "overview");
  for (const char* name : {"Tools", "", "nonsense", "icloud", " tools"}) {
    EXPECT_EQ(initialTab(name).id, "overview") << name;
  }
}

}  // namespace
}  // namespace cirrovane::test
