#include "cli/ReportText.h"

#include "base/DisplayText.h"
#include "core/TrustScoring.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kShownBlockers = 8;

std::string plural(std::int64_t count, std::string_view singular) {
  return fmt::format("{} {}{}", count, singular, count == 1 ? "" : "s");
}

class Page {
 public:
  template <class... Arguments>
  void line(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    fmt::format_to(std::back_inserter(text_), format, std::forward<Arguments>(arguments)...);
    text_ += '\n';
  }
  void blank() { text_ += '\n'; }
  std::string take() { return std::move(text_); }

 private:
  std::string text_;
};

void addVerdict(Page& page, const SyncHealthReport& report, const TextStyle& style) {
  const std::string_view verdict = report.safeToClose ? "SAFE TO CLOSE" : "NOT SAFE TO CLOSE";
  page.line("{}", style.bold(style.inVerdictColour(report.safeToClose, report.status, verdict)));
  page.blank();
}

void addNumbers(Page& page, const SyncHealthReport& report, const TextStyle& style) {
  const ScanMetrics& metrics = report.metrics;
  page.line("  {:<20}{:>3} of 100   {}", "Upload Trust", report.score,
            style.inStateColour(report.status, rawValue(report.status)));
  page.line("  {:<20}{:>3} of 100", "Local Availability", report.localAvailabilityScore);
  page.blank();
  const std::array<std::pair<std::string_view, std::int64_t>, 6> counts = {{
      {"Files", metrics.totalFiles},
      {"Folders", metrics.scannedFolders},
      {"Pending uploads", metrics.pendingUploads},
      {"Conflicts", metrics.unresolvedConflicts},
      {"Errors", metrics.errors},
      {"Cloud-only", metrics.notDownloaded},
  }};
  std::size_t width = 3;
  for (const auto& [label, count] : counts) {
    width = std::max(width, fmt::formatted_size("{}", count));
  }
  for (const auto& [label, count] : counts) {
    page.line("  {:<20}{:>{}}", label, count, width);
  }
}

void addFolders(Page& page, const SyncHealthReport& report, const TextStyle& style) {
  if (report.folderHealth.empty()) {
    return;
  }
  page.blank();
  page.line("{}", style.bold("Watched folders"));
  for (const FolderHealth& folder : report.folderHealth) {
    const std::string state = fmt::format("{:<8}", rawValue(folder.status));
    page.line("  {}{:>3}  {}  {}", style.inStateColour(folder.status, state), folder.score,
              displayText(folder.folder.name),
              style.dim(fmt::format("{}, {}", plural(folder.scannedFileCount, "file"),
                                    plural(folder.blockerCount, "blocker"))));
    page.line("               {}", style.dim(displayText(folder.folder.path)));
  }
}

void addBlockers(Page& page, const SyncHealthReport& report, const TextStyle& style) {
  if (report.blockers.empty()) {
    return;
  }
  page.blank();
  const std::size_t shown = std::min(kShownBlockers, report.blockers.size());
  page.line("{}", style.bold(shown == report.blockers.size()
                                 ? std::string("Blockers")
                                 : fmt::format("Blockers (the first {} of {})", shown, report.blockers.size())));
  for (std::size_t index = 0; index < shown; ++index) {
    const SyncBlocker& blocker = report.blockers[index];
    page.line("  {:<23}{}", displayTitle(blocker.reason), displayText(blocker.filePath));
    page.line("  {:<23}{}", "", style.dim(displayText(blocker.details)));
  }
  if (shown < report.blockers.size()) {
    page.line("  {}", style.dim("--json lists them all."));
  }
}

void addActions(Page& page, const SyncHealthReport& report, const TextStyle& style) {
  if (report.actions.empty()) {
    return;
  }
  page.blank();
  page.line("{}", style.bold("What to do next"));
  for (const RecommendedAction& action : report.actions) {
    page.line("  {}. {}", action.rank, action.title);
    page.line("     {}", style.dim(action.detail));
  }
}

}  // namespace

std::string reportText(const SyncHealthReport& report, const std::string& left, const TextStyle& style) {
  Page page;
  addVerdict(page, report, style);
  addNumbers(page, report, style);
  if (!left.empty()) {
    page.line("  {:<20}{}", "Left to upload", left);
  }
  addFolders(page, report, style);
  addBlockers(page, report, style);
  addActions(page, report, style);
  page.blank();
  page.line("{}", report.summary);
  return page.take();
}

}  // namespace cirrovane
