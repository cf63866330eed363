#include "ui/viewmodels/SafetyExplainerViewModel.h"

#include "core/BlockerReason.h"
#include "ui/viewmodels/CoverageText.h"
#include "ui/viewmodels/HealthWords.h"
#include "ui/viewmodels/Text.h"

#include <utility>
#include <vector>

namespace cirrovane {
namespace {

struct CriterionSign {
  const char* symbol;
  Tone tone;
  const char* words;
};

}  // namespace

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
  follow(context()->coverage().report());
}

void SafetyExplainerViewModel::update() {
  const SyncHealthReport& report = dashboard().report();
  verdict_ = dashboard().verdict();
  lastEvaluation_ = QStringLiteral("Last evaluation: ") +
                    (verdict_.isKnown() ? toQString(context()->timeText().moment(report.generatedAt, dashboard().now()))
                                        : QStringLiteral("not yet"));
  showCriteria();
  const SyncBlocker* blocker = report.blockers.empty() ? nullptr : &report.blockers.front();
  topBlockerReason_ = blocker != nullptr ? toQString(displayTitle(blocker->reason)) : QString();
  topBlockerDetails_ = blocker != nullptr ? toDisplay(blocker->details) : QString();
  topBlockerPath_ = blocker != nullptr ? blocker->filePath : std::string();
}

Tone SafetyExplainerViewModel::verdictTone() const {
  return cirrovane::verdictTone(verdict_);
}

QString SafetyExplainerViewModel::verdictNote() const {
  return context() == nullptr ? QString() : staleNote(verdict_, context()->timeText(), dashboard().now());
}

QString SafetyExplainerViewModel::coverageNote() const {
  return context() == nullptr ? QString() : yesNote(verdict_, context()->coverage().report().value());
}

void SafetyExplainerViewModel::showCriteria() {
  std::vector<CriterionRow> rows;
  for (const SafetyCriterion& criterion : dashboard().safetyCriteria()) {
    // Nothing passes before the first scan, since nobody has looked.
    const CriterionSign sign = !verdict_.isKnown() ? CriterionSign{"ellipsis.circle", Tone::Neutral, "Not checked yet"}
                               : criterion.isPassing
                                   ? CriterionSign{"checkmark.circle.fill", Tone::Good, "Passed"}
                                   : CriterionSign{"xmark.octagon.fill", Tone::Critical, "Not passed"};
    rows.push_back({.title = toQString(criterion.title),
                    .detail = toQString(criterion.detail),
                    .symbol = toQString(sign.symbol),
                    .tone = sign.tone,
                    .state = toQString(sign.words)});
  }
  criteria_.setRows(std::move(rows));
}

}  // namespace cirrovane
