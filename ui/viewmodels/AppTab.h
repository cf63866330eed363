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
  /// What its page says of itself.
  std::string_view pageTitle;
  std::string_view pageSubtitle;
};

inline constexpr std::string_view kDiagnosticsSubtitle =
    "Signals beyond file-level blockers to explain system conditions affecting trust.";

/// Every tab, in order.
inline constexpr std::array<AppTab, 13> kAppTabs = {{
    {"overview", "Overview", "gauge.with.dots.needle.67percent", "Cirrovane", "Proof-driven sync confidence"},
    {"why", "Why", "checklist", "Why This Verdict",
     "Clear proof of why this device is safe or unsafe to pause right now."},
    {"incidents", "Incidents", "exclamationmark.bubble", "Incident Center",
     "Persistent risk history with recurrence tracking and guardrail notifications."},
    {"status", "Status", "waveform.path.ecg", "Live Status",
     "Hardware and subsystem signals that affect reliability and confidence."},
    {"iCloud", "iCloud", "icloud.fill", "iCloud Diagnostics", kDiagnosticsSubtitle},
    {"finder", "Finder", "folder", "Finder Diagnostics", kDiagnosticsSubtitle},
    {"system", "System", "desktopcomputer", "System Diagnostics", kDiagnosticsSubtitle},
    {"network", "Network", "network", "Network Diagnostics", kDiagnosticsSubtitle},
    {"storage", "Storage", "internaldrive.fill", "Storage Diagnostics", kDiagnosticsSubtitle},
    {"power", "Power", "battery.75", "Power Diagnostics", kDiagnosticsSubtitle},
    {"performance", "Performance", "speedometer", "Performance Diagnostics", kDiagnosticsSubtitle},
    {"faq", "FAQ", "questionmark.circle", "FAQ", "Clear answers for trust, scoring, and safety decisions."},
    {"tools", "Tools", "square.and.arrow.down", "Tools & Downloads",
     "Optional terminal tools for deeper subsystem checks."},
}};

/// Those with a button of their own in the tab bar.
std::span<const AppTab> primaryTabs();
/// Those in the tab bar's menu.
std::span<const AppTab> extraTabs();

/// The tab of this exact id; nullptr when there is none.
const AppTab* findTab(std::string_view id);

/// The tab to begin with, by the value of the environment variable that may name one.
const AppTab& initialTab(const std::optional<std::string_view>& requested);

}  // namespace cirrovane
