#pragma once

#include "base/Published.h"
#include "base/Shared.h"
#include "coordinator/CoverageKeeper.h"
#include "coordinator/CoverageWatch.h"
#include "core/CoverageReport.h"
#include "core/WatchFolder.h"
#include "platform/Clock.h"
#include "platform/Executor.h"
#include "stores/Acknowledgement.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// What a review of the coverage needs; outlives it and all work that it has under way.
struct CoverageReviewEnvironment {
  CoverageEnvironment watch;
  /// An executor of its own: the files' lock may be held for a while, and a look must not be waited for.
  Executor& files;
  const Clock& clock;
};

/// The coverage as a user goes through it: the gaps, what is acknowledged, and the changes of that. Main thread only;
/// it may be destroyed at any time, and stops the look under way.
class CoverageReview {
 public:
  CoverageReview(std::shared_ptr<const CoverageKeeper> keeper, const CoverageReviewEnvironment& environment);

  CoverageReview(const CoverageReview&) = delete;
  CoverageReview& operator=(const CoverageReview&) = delete;

  /// Of the latest look, without what was acknowledged since; absent before the first.
  const Published<std::optional<Shared<CoverageReport>>>& report() const { return report_; }
  const Published<bool>& isLooking() const { return watch_.isLooking(); }
  /// Those that held when the file was last read, by the bytes of their paths.
  const Published<std::vector<Acknowledgement>>& acknowledgements() const { return acknowledgements_; }
  /// Whether a change is on its way to the disk.
  bool isChanging() const { return changes_.value() > 0; }
  /// How many are.
  const Published<int>& changes() const { return changes_; }
  /// Why the latest change came to nothing; absent when it was made.
  const Published<std::optional<std::string>>& failure() const { return failure_; }

  /// Looks at these folders from now on.
  void follow(std::vector<WatchFolder> folders);
  /// To be called when the user begins to go through it: the latest failure is old, the command line may have changed
  /// what is acknowledged, and a look is due sooner than without anybody who waits for it.
  void opened();
  /// Looks as soon as it can; does nothing before there are folders to look at.
  void look();

  /// Says that the user knows of a gap, for a time or for good. The report goes without it as soon as that is on the
  /// disk, and then the folders are looked at again.
  void acknowledge(const CoverageGap& gap, std::optional<std::chrono::days> time);
  /// Takes back what is acknowledged at exactly this path, and has the folders looked at again.
  void forget(const std::string& path);

 private:
  using Change = std::function<std::optional<Failure>(const CoverageKeeper& keeper)>;

  /// What came of a change, and what is acknowledged after it.
  struct Changed {
    std::optional<Failure> failure;
    std::vector<Acknowledgement> acknowledgements;
  };

  void readAcknowledgements();
  /// Makes the change off the main thread; `then` is called when it was made.
  void change(Change change, std::function<void()> then);
  /// Looks as soon as it can, and then takes what that finds as it is.
  void lookAfterChange();
  void showReport();

  std::shared_ptr<const CoverageKeeper> keeper_;
  CoverageReviewEnvironment environment_;
  CoverageWatch watch_;
  bool isFollowing_ = false;
  /// Acknowledged since the latest look began.
  std::vector<CoverageGap> acknowledgedSince_;
  Published<std::optional<Shared<CoverageReport>>> report_;
  Published<std::vector<Acknowledgement>> acknowledgements_;
  Published<int> changes_;
  Published<std::optional<std::string>> failure_;
  Subscription reportSubscription_;
  /// Gone with this object, by which work on its way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
