#include "ui/viewmodels/SafetyExplainerViewModel.h"

#include "core/BlockerReason.h"
#include "ui/viewmodels/Text.h"

#include <utility>
#include <vector>

namespace cirrovane {

SafetyExplainerViewModel::SafetyExplainerViewModel(QObject* parent)
    : PageViewModel(parent), criteria_({"title", "detail", "symbol", "level", "state"}) {}

QString SafetyExplainerViewModel::topBlockerPath() const {
  return toDisplay(topBlockerPath_);
}

void SafetyExplainerViewModel::revealTopBlocker() {
  if (hasTopBlocker()) {
    dashboard().revealInFinder(topBlockerPath_);
  }
}

void SafetyExplainerViewModel::begin() {
  follow(dashboard().publishedReport());
}

void SafetyExplainerViewModel::update() {
  const SyncHealthReport& report = dashboard().report();
  isSafe_ = report.safeToClose;
  lastEvaluation_ =
      QStringLiteral("Last evaluation: ") + toQString(context()->timeText().timeOfDay(report.generatedAt));
  showCriteria();
  const SyncBlocker* blocker = report.blockers.empty() ? nullptr : &report.blockers.front();
  topBlockerReason_ = blocker != nullptr ? toQString(displayTitle(blocker->reason)) : QString();
  topBlockerDetails_ = blocker != nullptr ? toDisplay(blocker->details) : QString();
  topBlockerPath_ = blocker != nullptr ? blocker->filePath : std::string();
}

void SafetyExplainerViewModel::showCriteria() {
  std::vector<RowListModel::Row> rows;
  for (const SafetyCriterion& criterion : dashboard().safetyCriteria()) {
    const bool passes = criterion.isPassing;
    const QString title = toQString(criterion.title);
    rows.push_back({title,
                    {title, toQString(criterion.detail),
                     passes ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("xmark.octagon.fill"),
                     passes ? QStringLiteral("ok") : QStringLiteral("error"),
                     passes ? QStringLiteral("Passed") : QStringLiteral("Not passed")}});
  }
  criteria_.setRows(std::move(rows));
}

}  // namespace cirrovane
