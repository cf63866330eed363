#include "ui/viewmodels/AppTab.h"

#include <algorithm>

namespace cirrovane {
namespace {

constexpr std::size_t kPrimaryCount = 6;

}  // namespace

std::span<const AppTab> primaryTabs() {
  return std::span(kAppTabs).first(kPrimaryCount);
}

std::span<const AppTab> extraTabs() {
  return std::span(kAppTabs).subspan(kPrimaryCount);
}

const AppTab* findTab(std::string_view id) {
  const auto* found = std::ranges::find(kAppTabs, id, &AppTab::id);
  return found != kAppTabs.end() ? found : nullptr;
}

const AppTab& initialTab(const std::optional<std::string_view>& requested) {
  const AppTab* tab = requested ? findTab(*requested) : nullptr;
  return tab != nullptr ? *tab : kAppTabs.front();
}

}  // namespace cirrovane
