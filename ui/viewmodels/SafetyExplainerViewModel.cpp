#include "ui/viewmodels/SafetyExplainerViewModel.h"

#include "core/BlockerReason.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/Text.h"

#include <utility>
#include <vector>

namespace cirrovane {
namespace {

struct CriterionSign {
  const char* symbol;
  const char* level;
  const char* words;
};

}  // namespace

SafetyExplainerViewModel::SafetyExplainerViewModel(QObject* parent)
    : PageViewModel(parent), criteria_({"title", "detail", "symbol", "level", "state"}) {}

QString SafetyExplainerViewModel::topBlockerPath() const {
  return toDisplay(topBlockerPath_);
}

void SafetyExplainerViewModel::revealTopBlocker() {
  if (hasTopBlocker()) {
    reveal(topBlockerPath_);
  }
}

void SafetyExplainerViewModel::begin() {
  follow(dashboard().publishedReport());
  follow(dashboard().publishedVerdict());
}

void SafetyExplainerViewModel::update() {
  const SyncHealthReport& report = dashboard().report();
  verdict_ = dashboard().verdict();
  lastEvaluation_ =
      QStringLiteral("Last evaluation: ") +
      (verdict_.isKnown() ? toQString(context()->timeText().timeOfDay(report.generatedAt)) : QStringLiteral("not yet"));
  showCriteria();
  const SyncBlocker* blocker = report.blockers.empty() ? nullptr : &report.blockers.front();
  topBlockerReason_ = blocker != nullptr ? toQString(displayTitle(blocker->reason)) : QString();
  topBlockerDetails_ = blocker != nullptr ? toDisplay(blocker->details) : QString();
  topBlockerPath_ = blocker != nullptr ? blocker->filePath : std::string();
}

QString SafetyExplainerViewModel::verdictState() const {
  return stateName(cirrovane::verdictState(verdict_));
}

QString SafetyExplainerViewModel::verdictNote() const {
  return context() == nullptr ? QString() : staleNote(verdict_, context()->timeText());
}

void SafetyExplainerViewModel::showCriteria() {
  std::vector<RowListModel::Row> rows;
  for (const SafetyCriterion& criterion : dashboard().safetyCriteria()) {
    // Before the first scan nothing was looked at, so nothing passes.
    const CriterionSign sign = !verdict_.isKnown()   ? CriterionSign{"ellipsis.circle", "none", "Not checked yet"}
                               : criterion.isPassing ? CriterionSign{"checkmark.circle.fill", "ok", "Passed"}
                                                     : CriterionSign{"xmark.octagon.fill", "error", "Not passed"};
    const QString title = toQString(criterion.title);
    rows.push_back(
        {title,
         {title, toQString(criterion.detail), toQString(sign.symbol), toQString(sign.level), toQString(sign.words)}});
  }
  criteria_.setRows(std::move(rows));
}

}  // namespace cirrovane
