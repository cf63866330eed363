#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace cirrovane {

/// A tab of the main window.
struct AppTab {
  /// Names the tab in the environment and everywhere in code.
  std::string_view id;
  std::string_view title;
  /// Name of its symbol.
  std::string_view sfSymbol;
};

/// Every tab, in order.
inline constexpr std::array<AppTab, 13> kAppTabs = {{
    {"overview", "Overview", "gauge.with.dots.needle.67percent"},
    {"why", "Why", "checklist"},
    {"incidents", "Incidents", "exclamationmark.bubble"},
    {"status", "Status", "waveform.path.ecg"},
    {"iCloud", "iCloud", "icloud.fill"},
    {"finder", "Finder", "folder"},
    {"system", "System", "desktopcomputer"},
    {"network", "Network", "network"},
    {"storage", "Storage", "internaldrive.fill"},
    {"power", "Power", "battery.75"},
    {"performance", "Performance", "speedometer"},
    {"faq", "FAQ", "questionmark.circle"},
    {"tools", "Tools", "square.and.arrow.down"},
}};

/// The tabs with a button in the tab bar.
std::span<const AppTab> primaryTabs();
/// The tabs in the tab bar's menu.
std::span<const AppTab> extraTabs();

/// The tab of this exact id; nullptr when there is none.
const AppTab* findTab(std::string_view id);

/// The tab that the environment variable's value names; the first tab for any other value.
const AppTab& initialTab(const std::optional<std::string_view>& requested);

}  // namespace cirrovane
