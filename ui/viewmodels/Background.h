#pragma once

#include <functional>
#include <thread>
#include <utility>

namespace cirrovane {

/// Runs a task beside all others; the task may outlive the caller.
using Background = std::function<void(std::function<void()>)>;

/// Runs it on a thread of its own.
inline void runDetached(std::function<void()> task) {
  std::thread(std::move(task)).detach();
}

}  // namespace cirrovane
