#pragma once

#include "platform/macos/plain/EventStream.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cirrovane {

/// A serial queue of the system's.
class DispatchQueue final : public SerialQueue {
 public:
  DispatchQueue();
  ~DispatchQueue() override;

  void post(std::function<void()> task) override;
  void postAfter(std::chrono::seconds delay, std::function<void()> task) override;
  void runAndWait(std::function<void()> task) override;

  /// Begins an account of what changes below these paths, which is told on this queue; nullptr when the system refuses.
  std::unique_ptr<EventStream> makeStream(const std::vector<std::string>& paths,
                                          std::function<void(std::vector<StreamEvent>)> tell);

 private:
  struct Queue;

  std::unique_ptr<Queue> queue_;
};

}  // namespace cirrovane
