#pragma once

#include "base/Shared.h"
#include "cli/LiveSession.h"
#include "coordinator/CoverageWatch.h"

#include <memory>
#include <optional>
#include <vector>

namespace cirrovane {

/// The coverage of a command that waits for a verdict which leaves nothing out: looked at each time that the verdict is
/// a YES, until it is complete.
class StrictWait {
 public:
  /// `session` outlives it, and is asked to look again whenever something was found.
  explicit StrictWait(LiveSession& session);

  /// To be told of each verdict; whether it is a YES that the coverage, looked at after it, vouches for.
  bool isVouchedFor(bool safeToClose);
  /// Whether a look has ended since the verdict became a YES.
  bool hasLooked() const { return report_.has_value(); }
  /// What the latest look found; absent before the first.
  const std::optional<Shared<CoverageReport>>& lastReport() const { return watch_.report().value(); }

 private:
  void look();

  LiveSession& session_;
  std::unique_ptr<Alarm> alarm_;
  CoverageWatch watch_;
  /// Of a look that began while the verdict was the YES that it still is.
  std::optional<Shared<CoverageReport>> report_;
  std::vector<WatchFolder> folders_;
  /// Goes when the verdict is no YES any more, and with it what is found for it.
  std::shared_ptr<const int> yes_;
};

}  // namespace cirrovane
