#include "cli/WatchLine.h"

#include "base/DisplayText.h"
#include "base/JSONWriter.h"
#include "cli/LocalTime.h"

#include <string_view>

#include <fmt/format.h>

namespace cirrovane {

bool WatchLine::saysTheSame(const WatchLine& other) const {
  WatchLine sameTimes = other;
  sameTimes.at = at;
  sameTimes.confirmedAt = confirmedAt;
  return *this == sameTimes;
}

WatchLine watchLine(const SyncHealthReport& report, const LiveVerdict& verdict, const Clock& clock) {
  const Liveness& liveness = verdict.liveness().value();
  WatchLine line;
  line.at = clock.now();
  line.blockerCount = std::ssize(report.blockers);
  const std::optional<Confirmation> confirmation = verdict.confirmation();
  line.confirmedAt = confirmation ? confirmation->at : report.generatedAt;
  line.liveness = rawValue(liveness.state);
  line.localAvailabilityScore = report.localAvailabilityScore;
  line.pendingUploads = report.metrics.pendingUploads;
  if (liveness.state != LivenessState::live) {
    line.reason = liveness.reason;
  }
  line.safeToClose = report.safeToClose;
  line.score = report.score;
  line.status = report.status;
  if (!report.blockers.empty()) {
    line.topBlocker = report.blockers.front().filePath;
  }
  line.totalFiles = report.metrics.totalFiles;
  return line;
}

std::string lineOfJSON(const WatchLine& line) {
  std::string text;
  JSONWriter writer(
      [&](std::string_view piece) {
        text += piece;
        return true;
      },
      JSONLayout::line);
  writer.write(line);
  writer.finish();
  return text + "\n";
}

std::string lineOfText(const WatchLine& line, const TextStyle& style) {
  const std::string_view verdict = line.safeToClose ? "SAFE TO CLOSE" : "NOT SAFE TO CLOSE";
  const std::string padded = fmt::format("{:<17}", verdict);
  std::string text = fmt::format("{}  {}  {:>3} of 100  {} file{}", localTimeOfDay(line.at),
                                 style.bold(style.inVerdictColour(line.safeToClose, line.status, padded)), line.score,
                                 line.totalFiles, line.totalFiles == 1 ? "" : "s");
  if (line.blockerCount > 0 && line.topBlocker) {
    text += fmt::format(", {} blocker{}: {}", line.blockerCount, line.blockerCount == 1 ? "" : "s",
                        displayText(*line.topBlocker));
  }
  const std::string_view state = line.liveness == "live"         ? "live"
                                 : line.liveness == "catchingUp" ? "catching up"
                                                                 : "not live";
  text +=
      style.dim(fmt::format("  {}{}{}", state, line.reason ? ": " : "", line.reason ? displayText(*line.reason) : ""));
  return text + "\n";
}

}  // namespace cirrovane
