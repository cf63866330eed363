#pragma once

#include "cli/Command.h"
#include "cli/ProgressLine.h"
#include "coordinator/RefreshCycle.h"

#include <optional>

namespace cirrovane {

/// A whole refresh, all of it on this thread: nobody is notified, and no setting is written.
class InlineRefresh {
 public:
  explicit InlineRefresh(CommandContext& context)
      : cycle_(makeServices(context.machine, &progress_), {{executor_, executor_, executor_, executor_},
                                                           *context.machine.fileStorage,
                                                           *context.machine.userDefaults,
                                                           *context.machine.clock,
                                                           *context.machine.monotonicClock}) {
    const ProgressLine line(progress_, context.err);
    cycle_.refresh();
  }

  const RefreshCycle& cycle() const { return cycle_; }

  /// Why something of the refresh could not be kept; absent when all was.
  std::optional<Failure> loss() const {
    const auto& history = cycle_.historyStore().saveFailure();
    const auto& incidents = cycle_.incidentStore().saveFailure();
    if (history || incidents) {
      return history ? history : incidents;
    }
    return cycle_.fileCountFailure();
  }

 private:
  InlineExecutor executor_;
  ScanProgress progress_;
  RefreshCycle cycle_;
};

}  // namespace cirrovane
