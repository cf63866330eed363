#include "evidence/PagePicture.h"

#include "base/ISO8601.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

// The picture's own measures, which the page scales.
constexpr double kWidth = 720;
constexpr double kHeight = 210;
constexpr double kLeft = 44;
constexpr double kRight = 708;
constexpr double kTop = 12;
constexpr double kBottom = 178;

double yOf(std::int64_t score) {
  return kBottom - static_cast<double>(std::clamp<std::int64_t>(score, 0, 100)) / 100 * (kBottom - kTop);
}

class Picture {
 public:
  template <class... Values>
  void add(fmt::format_string<Values...> form, Values&&... values) {
    fmt::format_to(std::back_inserter(svg_), form, std::forward<Values>(values)...);
  }
  std::string take() { return std::move(svg_); }

 private:
  std::string svg_;
};

}  // namespace

std::string pageTime(Time time) {
  const std::string text = iso8601Text(time);
  return text.substr(0, 10) + " " + text.substr(11, 5) + " UTC";
}

std::string timelinePicture(std::span<const ScanSnapshot> snapshots) {
  if (snapshots.empty()) {
    return {};
  }
  std::vector<const ScanSnapshot*> scans;
  std::ranges::transform(snapshots, std::back_inserter(scans), [](const ScanSnapshot& scan) { return &scan; });
  // Newest first, they come in reverse.
  std::ranges::reverse(scans);
  std::ranges::stable_sort(scans, {}, &ScanSnapshot::timestamp);
  // In whole seconds, as a packet's file has them.
  const auto seconds = [](Time time) {
    return static_cast<double>(std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count());
  };
  const double first = seconds(scans.front()->timestamp);
  const double span = seconds(scans.back()->timestamp) - first;
  const auto xOf = [&](const ScanSnapshot& scan) {
    return span > 0 ? kLeft + 8 + (seconds(scan.timestamp) - first) / span * (kRight - kLeft - 16)
                    : (kLeft + kRight) / 2;
  };

  Picture picture;
  const auto safe = std::ranges::count(scans, true, &ScanSnapshot::safeToClose);
  picture.add(
      "<svg class=\"timeline\" viewBox=\"0 0 {} {}\" role=\"img\" aria-label=\"Upload Trust of {} scans, of which {} "
      "were safe to close\">\n",
      kWidth, kHeight, scans.size(), safe);
  picture.add("<rect class=\"danger\" x=\"{}\" y=\"{:.1f}\" width=\"{}\" height=\"{:.1f}\"/>\n", kLeft, yOf(70),
              kRight - kLeft, yOf(0) - yOf(70));
  for (const std::int64_t score : {0, 70, 100}) {
    picture.add(R"(<line class="grid" x1="{}" y1="{:.1f}" x2="{}" y2="{:.1f}"/>)", kLeft, yOf(score), kRight,
                yOf(score));
    picture.add("<text x=\"{}\" y=\"{:.1f}\" text-anchor=\"end\">{}</text>\n", kLeft - 6, yOf(score) + 4, score);
  }
  picture.add(R"(<polyline class="line" points=")");
  for (const ScanSnapshot* scan : scans) {
    picture.add("{:.1f},{:.1f} ", xOf(*scan), yOf(scan->score));
  }
  picture.add("\"/>\n");
  for (const ScanSnapshot* scan : scans) {
    const double x = xOf(*scan);
    const double y = yOf(scan->score);
    // Told by shape too, since colours may be missing.
    if (scan->safeToClose) {
      picture.add(R"(<circle class="safe" cx="{:.1f}" cy="{:.1f}" r="4.5">)", x, y);
    } else {
      picture.add(R"(<path class="unsafe" d="M{:.1f} {:.1f}l5.5 5.5l-5.5 5.5l-5.5 -5.5z">)", x, y - 5.5);
    }
    picture.add("<title>{}: {}, {}</title></{}>\n", pageTime(scan->timestamp), scan->score,
                scan->safeToClose ? "safe" : "not safe", scan->safeToClose ? "circle" : "path");
  }
  if (span > 0) {
    picture.add(R"(<text x="{}" y="{}">{}</text>)", kLeft, kHeight - 8, pageTime(scans.front()->timestamp));
    picture.add("<text x=\"{}\" y=\"{}\" text-anchor=\"end\">{}</text>\n", kRight, kHeight - 8,
                pageTime(scans.back()->timestamp));
  } else {
    picture.add("<text x=\"{}\" y=\"{}\" text-anchor=\"middle\">{}</text>\n", (kLeft + kRight) / 2, kHeight - 8,
                pageTime(scans.front()->timestamp));
  }
  picture.add("</svg>\n");
  return picture.take();
}

}  // namespace cirrovane
