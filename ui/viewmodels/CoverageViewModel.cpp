#include "ui/viewmodels/CoverageViewModel.h"

#include "coordinator/CoverageReview.h"
#include "coordinator/CoverageWords.h"
#include "ui/viewmodels/CoverageText.h"
#include "ui/viewmodels/Text.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

constexpr std::chrono::days kWeek{7};

/// The bytes themselves, since two names that look alike are two rows.
QString keyOfPath(std::string_view sort, const std::string& path) {
  return toQString(sort) + QLatin1Char(' ') + QString::fromLatin1(path.data(), static_cast<qsizetype>(path.size()));
}

QString headingOf(std::string_view title, std::size_t count) {
  return QStringLiteral("%1 (%2)").arg(toQString(title)).arg(count);
}

CoverageRow gapRow(const CoverageGap& gap) {
  const QString folder = QStringLiteral("In %1").arg(toDisplay(gap.folderName));
  return {.key = keyOfPath(rawValue(gap.kind), gap.path),
          .path = toDisplay(gap.path),
          .detail = gap.rule ? folder + QStringLiteral(" · ") + toDisplay(*gap.rule) : folder,
          .canReveal = true,
          .canAcknowledge = true,
          .gap = gap};
}

void addGaps(const CoverageReport& report, std::vector<CoverageRow>& rows) {
  for (const GapKind kind : kAllGapKinds) {
    const std::int64_t count = report.gapCounts.of(kind);
    if (count == 0) {
      continue;
    }
    const std::size_t first = rows.size();
    for (const CoverageGap& gap : report.gaps) {
      if (gap.kind == kind) {
        rows.push_back(gapRow(gap));
      }
    }
    if (rows.size() == first) {
      rows.push_back({.key = toQString(rawValue(kind))});
    }
    rows[first].heading = headingOf(displayTitle(kind), static_cast<std::size_t>(count));
    rows[first].note = toQString(adviceOn(kind));
    rows.back().more = toQString(notListedText(report, kind));
  }
}

void addNotExamined(const CoverageReport& report, std::vector<CoverageRow>& rows) {
  const std::size_t first = rows.size();
  for (const std::string& path : report.notExamined) {
    rows.push_back({.key = keyOfPath("notExamined", path), .path = toDisplay(path), .canReveal = true});
    rows.back().gap.path = path;
  }
  if (rows.size() > first) {
    rows[first].heading = headingOf(kNotLookedAtTitle, report.notExamined.size());
    rows[first].note = QStringLiteral(
        "These watched folders are missing, cannot be listed or lie outside iCloud Drive. "
        "Bring them back, or remove them from the watchlist.");
  }
}

}  // namespace

void CoverageViewModel::begin() {
  const CoverageReview& coverage = context()->coverage();
  follow(coverage.report());
  follow(coverage.isLooking());
  follow(coverage.acknowledgements());
  follow(coverage.changes());
  follow(coverage.failure());
}

void CoverageViewModel::update() {
  const CoverageReview& coverage = context()->coverage();
  const std::optional<Shared<CoverageReport>>& report = coverage.report().value();
  summary_ = coverageSummary(report);
  lookedAt_ = QString();
  std::vector<CoverageRow> rows;
  if (report) {
    const CoverageReport& found = **report;
    lookedAt_ = QStringLiteral("Looked at %1: %2.")
                    .arg(toQString(context()->timeText().moment(found.generatedAt, dashboard().now())),
                         toQString(examinedText(found.examined)));
    addGaps(found, rows);
    addNotExamined(found, rows);
  }
  const std::vector<Acknowledgement>& acknowledged = coverage.acknowledgements().value();
  const std::size_t first = rows.size();
  for (const Acknowledgement& one : acknowledged) {
    rows.push_back(acknowledgedRow(one));
  }
  if (rows.size() > first) {
    rows[first].heading = headingOf("Acknowledged", acknowledged.size());
    rows[first].note = QStringLiteral("You know of these and of what lies below them, so they are left out.");
  }
  rows_.setRows(std::move(rows));
}

CoverageRow CoverageViewModel::acknowledgedRow(const Acknowledgement& one) const {
  const auto moment = [&](Time time) { return toQString(context()->timeText().dayAndTime(time)); };
  const QString end = one.expiresAt ? QStringLiteral("until ") + moment(*one.expiresAt) : QStringLiteral("for good");
  CoverageRow row{.key = keyOfPath("acknowledged", one.path),
                  .path = toDisplay(one.path),
                  .detail = QStringLiteral("Since %1, %2").arg(moment(one.acknowledgedAt), end),
                  .canReveal = true,
                  .canForget = true};
  row.gap.path = one.path;
  return row;
}

bool CoverageViewModel::isLooking() const {
  return context() != nullptr && context()->coverage().isLooking().value();
}

bool CoverageViewModel::isChanging() const {
  return context() != nullptr && context()->coverage().isChanging();
}

QString CoverageViewModel::failure() const {
  return context() == nullptr ? QString() : toDisplay(context()->coverage().failure().value().value_or(""));
}

CoverageReview& CoverageViewModel::review() const {
  return context()->coverage(For<CoverageViewModel>());
}

void CoverageViewModel::opened() {
  if (context() != nullptr) {
    review().opened();
    updateNow();
  }
}

void CoverageViewModel::lookAgain() {
  if (context() != nullptr) {
    review().look();
  }
}

void CoverageViewModel::reveal(int row) {
  if (const CoverageRow* shown = rows_.find(row)) {
    PageViewModel::reveal(shown->gap.path);
  }
}

void CoverageViewModel::acknowledge(int row, std::optional<std::chrono::days> time) {
  if (const CoverageRow* shown = rows_.find(row); shown != nullptr && shown->canAcknowledge) {
    review().acknowledge(shown->gap, time);
    updateNow();
  }
}

void CoverageViewModel::acknowledgeForAWeek(int row) {
  acknowledge(row, kWeek);
}

void CoverageViewModel::acknowledgeForGood(int row) {
  acknowledge(row, std::nullopt);
}

void CoverageViewModel::forget(int row) {
  if (const CoverageRow* shown = rows_.find(row); shown != nullptr && shown->canForget) {
    review().forget(shown->gap.path);
    updateNow();
  }
}

}  // namespace cirrovane
