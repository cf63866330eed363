#pragma once

#include <memory>

namespace cirrovane {

/// Keeps the system from slowing this process's timers while no window of it is in sight; the Mac may still go to
/// sleep. For as long as it lives.
class WatchingActivity {
 public:
  WatchingActivity();
  ~WatchingActivity();

  WatchingActivity(const WatchingActivity&) = delete;
  WatchingActivity& operator=(const WatchingActivity&) = delete;

 private:
  struct Token;

  std::unique_ptr<Token> token_;
};

}  // namespace cirrovane
