#pragma once

#include "cli/Output.h"
#include "core/ScanProgress.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace cirrovane {

/// Shows on a terminal how far a scan has come, once it takes long enough for somebody to wonder; erased at the end.
/// Shows nothing where the output is no terminal, or one that cannot erase. While it lives nobody else writes to the
/// output.
class ProgressLine {
 public:
  ProgressLine(const ScanProgress& progress, Output& out);
  ~ProgressLine();

  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

 private:
  void showUntilOver();
  void draw(std::chrono::duration<double> elapsed);

  const ScanProgress& progress_;
  Output& out_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace cirrovane
