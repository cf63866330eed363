#pragma once

#include "base/Published.h"
#include "base/Result.h"
#include "base/Shared.h"
#include "coordinator/RefreshCycle.h"
#include "core/CoverageReport.h"
#include "platform/Executor.h"
#include "platform/FileStorage.h"
#include "platform/UserDefaults.h"

#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// What a metrics file needs of the machine; outlives it and all work that it has under way.
struct MetricsFileEnvironment {
  Executor& main;
  /// An executor of its own: the disk that holds the file may take its time.
  Executor& writing;
  const FileStorage& fileStorage;
  UserDefaults& userDefaults;
  /// "v1.2 (45)".
  std::string version;
};

/// Writes the metrics of this machine to a file of the user's choice after each refresh, as long as the user wants
/// that. Main thread only; it may be destroyed at any time.
class MetricsFile {
 public:
  using PublishedCoverage = Published<std::optional<Shared<CoverageReport>>>;

  /// The refresh and the coverage outlive it.
  MetricsFile(const RefreshCycle& cycle, const PublishedCoverage& coverage, MetricsFileEnvironment environment);

  MetricsFile(const MetricsFile&) = delete;
  MetricsFile& operator=(const MetricsFile&) = delete;

  /// The file's absolute path, also while nothing is written; empty before anybody chose one.
  const std::string& place() const { return place_; }
  bool isOn() const { return isOn_; }
  /// Why the latest metrics could not be written; absent when they were, and while nothing is to be.
  const Published<std::optional<Failure>>& failure() const { return failure_; }

  /// Writes to this file from now on, beginning with what is known.
  void writeTo(const std::string& place);
  /// Begins again or ends, and leaves the file as it is. Nothing begins without a place.
  void setOn(bool isOn);

 private:
  void choose(bool isOn);
  void write();
  void finish(const std::string& place, std::optional<Failure> failure);

  const RefreshCycle& cycle_;
  const PublishedCoverage& coverage_;
  MetricsFileEnvironment environment_;
  std::string place_;
  bool isOn_;
  Published<std::optional<Failure>> failure_;
  bool isWriting_ = false;
  /// Whether there is something newer than what is being written.
  bool isOutdated_ = false;
  Subscription subscription_;
  /// Gone with this object, by which a write on its way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
