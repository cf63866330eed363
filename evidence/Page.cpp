#include "evidence/Page.h"

#include "base/DisplayText.h"
#include "base/Path.h"
#include "base/UTF8.h"
#include "coordinator/HistorySummary.h"
#include "coordinator/SafetyCriterion.h"
#include "evidence/PageAssets.h"
#include "evidence/PagePicture.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr std::size_t kLongestText = 4096;

/// Text up to a length, and never half a character.
std::string_view cut(std::string_view text) {
  if (text.size() <= kLongestText) {
    return text;
  }
  std::size_t length = kLongestText;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80) {
    --length;
  }
  return text.substr(0, length);
}

/// A sign's class and its word.
struct Sign {
  std::string_view tone;
  std::string_view word;
};

Sign signOf(DiagnosticSeverity severity) {
  switch (severity) {
    case DiagnosticSeverity::ok:
      return {"good", "OK"};
    case DiagnosticSeverity::info:
      return {"note", "Info"};
    case DiagnosticSeverity::warning:
      return {"warn", "Warning"};
    case DiagnosticSeverity::error:
      break;
  }
  return {"bad", "Error"};
}

Sign signOf(HealthState state) {
  switch (state) {
    case HealthState::safe:
      return {"good", "Safe"};
    case HealthState::warning:
      return {"warn", "Needs Attention"};
    case HealthState::danger:
      break;
  }
  return {"bad", "Unsafe"};
}

std::int64_t asNumber(std::size_t count) {
  return static_cast<std::int64_t>(count);
}

class PageWriter {
 public:
  PageWriter(const PageContent& content, const ByteSink& sink) : content_(content), sink_(sink) {}

  bool write() {
    writeHead();
    writeVerdict();
    writeCriteria();
    writeActions();
    writeTimeline();
    writeBlockers();
    writeFolders();
    writeFindings();
    writeIncidents();
    writeHistory();
    add("<p class=\"dim small\">This page was made from the proof packet alone. It asks no network and holds nothing "
        "of "
        "what is in the files.</p>\n</main>\n<script>{}</script>\n</body>\n</html>\n",
        kPageScript);
    return flush(0);
  }

 private:
  static constexpr std::size_t kFlushSize = std::size_t{64} * 1024;

  template <class... Values>
  void add(fmt::format_string<Values...> form, Values&&... values) {
    fmt::format_to(std::back_inserter(html_), form, std::forward<Values>(values)...);
    flush(kFlushSize);
  }
  bool flush(std::size_t from) {
    if (html_.size() > from) {
      isTaken_ = isTaken_ && sink_(html_);
      html_.clear();
    }
    return isTaken_;
  }

  static std::string time(Time time) { return fmt::format("<time>{}</time>", pageTime(time)); }
  static std::string time(const std::optional<Time>& when) { return when ? time(*when) : std::string(); }

  void beginSection(std::string_view heading, std::string_view id = {}) {
    add("<section{}>\n<h2>{}</h2>\n", id.empty() ? std::string() : fmt::format(" id=\"{}\"", id), heading);
  }
  void endSection() { add("</section>\n"); }
  /// How many elements of a list are not on the page.
  void writeRest(std::size_t hidden, std::string_view what) {
    if (hidden > 0) {
      add("<p class=\"dim\">And {} more {}, which the packet itself lists.</p>\n", hidden, what);
    }
  }
  void beginTable(std::string_view columns) { add("<table>\n<thead><tr>{}</tr></thead>\n<tbody>\n", columns); }
  void endTable() { add("</tbody>\n</table>\n"); }

  void writeHead() {
    add("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; script-src '{}'; style-src '{}'; "
        "base-uri 'none'; form-action 'none'\">\n<meta name=\"referrer\" content=\"no-referrer\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>Cirrovane proof: {}, "
        "{}</title>\n"
        "<style>{}</style>\n</head>\n<body>\n<main>\n",
        kPageScriptHash, kPageStyleHash, content_.report().safeToClose ? "safe to close" : "not safe to close",
        pageTime(content_.report().generatedAt), kPageStyle);
  }

  void writeVerdict() {
    const SyncHealthReport& report = content_.report();
    add("<header>\n<p class=\"dim small\">Cirrovane proof packet</p>\n<h1 class=\"{}\">{} <span>{}</span></h1>\n",
        report.safeToClose ? "good" : "bad", report.safeToClose ? "YES" : "NO",
        report.safeToClose ? "It was safe to close this Mac" : "It was not safe to close this Mac");
    add("<p>{}</p>\n<ul class=\"scores\">\n", htmlText(report.summary));
    const Sign sign = signOf(report.status);
    add("<li><b>{}</b>Upload Trust, of 100</li>\n<li><b>{}</b>Local Availability, of 100</li>\n"
        "<li><b class=\"{}\">{}</b>State</li>\n</ul>\n",
        report.score, report.localAvailabilityScore, sign.tone, sign.word);
    add("<p class=\"dim small\">Scanned {}, exported {}. {} files in {} watched folders.</p>\n</header>\n",
        time(report.generatedAt), time(content_.exportedAt()), report.metrics.totalFiles,
        report.metrics.scannedFolders);
  }

  void writeCriteria() {
    beginSection("Criteria");
    bool hasCritical = false;
    for (const BlockerReason reason : kAllBlockerReasons) {
      hasCritical = hasCritical || (isCritical(reason) && content_.count(reason) > 0);
    }
    const std::size_t gaps =
        content_.count(BlockerReason::unavailableFolder) + content_.count(BlockerReason::outsideICloud);
    add("<ul class=\"checks\">\n");
    for (const SafetyCriterion& criterion : safetyCriteria({content_.report().metrics, asNumber(gaps), hasCritical})) {
      add("<li><span class=\"sign {}\">{}</span><span><b>{}</b><br>{}</span></li>\n",
          criterion.isPassing ? "good" : "bad", criterion.isPassing ? "✓ Met" : "✕ Not met", htmlText(criterion.title),
          htmlText(criterion.detail));
    }
    add("</ul>\n");
    endSection();
  }

  void writeActions() {
    if (content_.actions().shown.empty()) {
      return;
    }
    beginSection("Next steps");
    add("<ol>\n");
    for (const RecommendedAction& action : content_.actions().shown) {
      add("<li><b>{}</b><br>{}</li>\n", htmlText(action.title), htmlText(action.detail));
    }
    add("</ol>\n");
    endSection();
  }

  void writeTimeline() {
    beginSection("Timeline", "timeline");
    const auto& history = content_.history().shown;
    if (history.empty()) {
      add("<p class=\"dim\">No scan is recorded.</p>\n");
    } else {
      add("<p class=\"dim\">Upload Trust of the last {} scans. {}.</p>\n", history.size(),
          htmlText(recentStabilityText(history)));
      add("{}", timelinePicture(history));
      add("<p class=\"dim small\"><span class=\"key round\"></span>safe to close &nbsp; <span class=\"key "
          "turned\"></span>"
          "not safe to close &nbsp; Below 70, in the tinted field, the state is Unsafe.</p>\n");
    }
    endSection();
  }

  void writeBlockers() {
    const auto& blockers = content_.blockers();
    beginSection(fmt::format("Blockers ({})", blockers.total), "blockers");
    if (blockers.total == 0) {
      add("<p class=\"dim\">Nothing stood in the way.</p>\n");
      endSection();
      return;
    }
    add("<div class=\"filter\" id=\"filter\" hidden><input type=\"search\" id=\"words\" "
        "aria-label=\"Search names and paths\" placeholder=\"Search names and paths\">"
        "<select id=\"reason\" aria-label=\"Reason\"><option value=\"\">All reasons</option>");
    for (const BlockerReason reason : kAllBlockerReasons) {
      if (content_.count(reason) > 0) {
        add("<option value=\"{}\">{} ({})</option>", rawValue(reason), displayTitle(reason), content_.count(reason));
      }
    }
    add("</select><span class=\"dim\" id=\"count\" role=\"status\"></span></div>\n");
    beginTable(
        "<th class=\"reason\">Reason</th><th>File</th><th class=\"where\">Watched folder</th>"
        "<th class=\"when\">Last changed</th>");
    for (const SyncBlocker& blocker : blockers.shown) {
      const std::string_view path = withoutTrailingSlash(blocker.filePath);
      const std::string_view name = path == "/" ? path : lastPathComponent(path);
      add("<tr data-reason=\"{}\"><td><b>{}</b></td><td><bdi class=\"file\">{}</bdi><bdi class=\"path\">{}</bdi>"
          "<bdi>{}</bdi></td>",
          rawValue(blocker.reason), displayTitle(blocker.reason), htmlText(name), htmlText(blocker.filePath),
          htmlText(blocker.details));
      add("<td data-label=\"Watched folder\"><bdi>{}</bdi></td><td data-label=\"Last changed\">{}</td></tr>\n",
          htmlText(blocker.folderName), blocker.lastModified ? time(blocker.lastModified) : "not known");
    }
    endTable();
    writeRest(blockers.hidden(), "blockers");
    endSection();
  }

  void writeFolders() {
    beginSection("Watched folders");
    if (content_.folders().total == 0) {
      add("<p class=\"dim\">No folder was watched.</p>\n");
      endSection();
      return;
    }
    beginTable(
        "<th>Folder</th><th class=\"state\">State</th><th class=\"count\">Upload Trust</th>"
        "<th class=\"count\">Files</th><th class=\"count\">Blockers</th>");
    for (const FolderHealth& health : content_.folders().shown) {
      const Sign sign = signOf(health.status);
      add("<tr><td><bdi class=\"file\">{}</bdi><bdi class=\"path\">{}</bdi></td><td class=\"sign {}\">{}</td>"
          "<td data-label=\"Upload Trust\">{}</td><td data-label=\"Files\">{}</td><td "
          "data-label=\"Blockers\">{}</td></tr>\n",
          htmlText(health.folder.name), htmlText(health.folder.path), sign.tone, sign.word, health.score,
          health.scannedFileCount, health.blockerCount);
    }
    endTable();
    writeRest(content_.folders().hidden(), "folders");
    endSection();
  }

  void writeFindings() {
    beginSection("Findings");
    if (content_.findings().total == 0) {
      add("<p class=\"dim\">None.</p>\n");
      endSection();
      return;
    }
    beginTable(R"(<th class="state">Severity</th><th class="where">Domain</th><th>Finding</th>)");
    for (const DiagnosticFinding& finding : content_.findings().shown) {
      const Sign sign = signOf(finding.severity);
      add("<tr><td class=\"sign {}\">{}</td><td>{}</td><td><b>{}</b><br><bdi>{}</bdi></td></tr>\n", sign.tone,
          sign.word, rawValue(finding.domain), htmlText(finding.title), htmlText(finding.detail));
    }
    endTable();
    writeRest(content_.findings().hidden(), "findings");
    endSection();
  }

  void writeIncidents() {
    const auto& incidents = content_.incidents();
    beginSection("Incidents");
    if (incidents.total == 0) {
      add("<p class=\"dim\">None is remembered.</p>\n");
      endSection();
      return;
    }
    beginTable(
        "<th class=\"state\">State</th><th>Incident</th><th class=\"times\">Times</th>"
        "<th class=\"when\">First seen</th><th class=\"when\">Last seen</th>");
    for (const IncidentRecord& incident : incidents.shown) {
      const Sign sign = incident.isResolved ? Sign{"dim", "Resolved"} : signOf(incident.severity);
      add("<tr><td class=\"sign {}\">{}</td><td><b>{}: {}</b><br><bdi>{}</bdi></td>", sign.tone, sign.word,
          rawValue(incident.domain), htmlText(incident.title), htmlText(incident.lastDetail));
      add("<td data-label=\"Times\">{}</td><td data-label=\"First seen\">{}</td><td data-label=\"Last "
          "seen\">{}</td></tr>\n",
          incident.occurrences, time(incident.firstSeen), time(incident.lastSeen));
    }
    endTable();
    writeRest(incidents.hidden(), "incidents");
    endSection();
  }

  void writeHistory() {
    const auto& history = content_.history();
    if (history.total == 0) {
      return;
    }
    beginSection("Recorded scans");
    beginTable(
        "<th class=\"where\">Scan</th><th class=\"state\">Verdict</th><th class=\"count\">Upload Trust</th>"
        "<th class=\"count\">Blockers</th><th>First blocker</th>");
    for (const ScanSnapshot& scan : history.shown) {
      add("<tr><td>{}</td><td class=\"sign {}\">{}</td><td data-label=\"Upload Trust\">{}</td>"
          "<td data-label=\"Blockers\">{}</td><td>{}",
          time(scan.timestamp), scan.safeToClose ? "good" : "bad", scan.safeToClose ? "Safe" : "Not safe", scan.score,
          scan.blockerCount, scan.topBlockerReason ? displayTitle(*scan.topBlockerReason) : "");
      if (scan.topBlockerFilePath) {
        add(" <bdi class=\"path\">{}</bdi>", htmlText(*scan.topBlockerFilePath));
      }
      add("</td></tr>\n");
    }
    endTable();
    writeRest(history.hidden(), "scans");
    endSection();
  }

  const PageContent& content_;
  const ByteSink& sink_;
  std::string html_;
  bool isTaken_ = true;
};

}  // namespace

std::string htmlText(std::string_view text) {
  const std::string_view kept = cut(text);
  std::string html;
  for (const char byte : displayText(kept)) {
    switch (byte) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += byte;
    }
  }
  return kept.size() < text.size() ? html + " …" : html;
}

bool writePage(const PageContent& content, const ByteSink& sink) {
  return PageWriter(content, sink).write();
}

std::string pageLines(const PageContent& content, std::size_t mostBlockers) {
  const SyncHealthReport& report = content.report();
  std::string lines =
      report.safeToClose ? "YES. It was safe to close this Mac\n" : "NO. It was not safe to close this Mac\n";
  lines += displayText(report.summary) + "\n";
  const auto& blockers = content.blockers().shown;
  for (std::size_t index = 0; index < std::min(mostBlockers, blockers.size()); ++index) {
    fmt::format_to(std::back_inserter(lines), "\n{}\n{}\n{}\n", displayTitle(blockers[index].reason),
                   displayText(cut(blockers[index].filePath)), displayText(cut(blockers[index].details)));
  }
  return lines;
}

}  // namespace cirrovane
