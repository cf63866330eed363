#include "coordinator/CoverageReview.h"

#include "base/UTF8.h"
#include "coordinator/CoverageWords.h"
#include "coordinator/StageSequence.h"

#include <algorithm>
#include <utility>

namespace cirrovane {

CoverageReview::CoverageReview(std::shared_ptr<const CoverageKeeper> keeper,
                               const CoverageReviewEnvironment& environment)
    : keeper_(std::move(keeper)), environment_(environment), watch_(keeper_, environment.watch) {
  reportSubscription_ = watch_.report().afterChange([this](const std::optional<Shared<CoverageReport>>& report) {
    showReport();
    if (report) {
      readAcknowledgements();
    }
  });
}

void CoverageReview::follow(std::vector<WatchFolder> folders) {
  isFollowing_ = true;
  watch_.follow(std::move(folders));
  if (!watch_.report().value()) {
    // The look that comes begins after all of these.
    acknowledgedSince_.clear();
  }
}

void CoverageReview::opened() {
  failure_.set(std::nullopt);
  readAcknowledgements();
  if (!isLooking().value() && environment_.watch.monotonicClock.sinceBoot() >= watch_.waitingLookDue()) {
    look();
  }
}

void CoverageReview::look() {
  if (isFollowing_) {
    watch_.look();
  }
}

void CoverageReview::readAcknowledgements() {
  const auto read = std::make_shared<std::vector<Acknowledgement>>();
  runStages({{environment_.files, [read, keeper = keeper_] { *read = keeper->acknowledgements(); }},
             {environment_.watch.main, [read, this] { acknowledgements_.set(std::move(*read)); }}},
            alive_);
}

void CoverageReview::acknowledge(const CoverageGap& gap, std::optional<std::chrono::days> time) {
  if (!isValidUTF8(gap.path)) {
    // The file could only hold another name, which would cover nothing.
    failure_.set(notUTF8Text(gap.path));
    return;
  }
  std::optional<Time> expiresAt;
  if (time) {
    expiresAt = environment_.clock.now() + *time;
  }
  change(
      [path = gap.path, expiresAt](const CoverageKeeper& keeper) -> std::optional<Failure> {
        if (const auto failure = keeper.acknowledge({path}, expiresAt)) {
          return Failure{notAcknowledgedText(failure->message)};
        }
        return std::nullopt;
      },
      [this, gap] {
        acknowledgedSince_.push_back(gap);
        showReport();
      });
}

void CoverageReview::forget(const std::string& path) {
  change([path](const CoverageKeeper& keeper) { return keeper.forget({path}); },
         [this, path] { std::erase_if(acknowledgedSince_, [&](const CoverageGap& gap) { return gap.path == path; }); });
}

void CoverageReview::change(Change change, std::function<void()> then) {
  changes_.set(changes_.value() + 1);
  const auto changed = std::make_shared<Changed>();
  runStages({{environment_.files,
              [changed, change = std::move(change), keeper = keeper_] {
                changed->failure = change(*keeper);
                changed->acknowledgements = keeper->acknowledgements();
              }},
             {environment_.watch.main,
              [changed, then = std::move(then), this] {
                acknowledgements_.set(std::move(changed->acknowledgements));
                if (changed->failure) {
                  failure_.set(std::move(changed->failure->message));
                } else {
                  failure_.set(std::nullopt);
                  then();
                  lookAfterChange();
                }
                changes_.set(changes_.value() - 1);
              }}},
            alive_);
}

void CoverageReview::lookAfterChange() {
  if (!isFollowing_) {
    return;
  }
  watch_.look([this, before = acknowledgedSince_](const Shared<CoverageReport>&) {
    // This look began after they were acknowledged, and has left them out itself.
    std::erase_if(acknowledgedSince_,
                  [&](const CoverageGap& gap) { return std::ranges::find(before, gap) != before.end(); });
    showReport();
  });
}

void CoverageReview::showReport() {
  std::optional<Shared<CoverageReport>> shown = watch_.report().value();
  if (shown && !acknowledgedSince_.empty()) {
    CoverageReport report = **shown;
    for (const CoverageGap& gap : acknowledgedSince_) {
      report = withAcknowledged(std::move(report), gap);
    }
    shown = Shared<CoverageReport>(std::move(report));
  }
  report_.set(std::move(shown));
}

}  // namespace cirrovane
