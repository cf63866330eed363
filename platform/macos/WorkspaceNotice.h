#pragma once

#include <functional>
#include <memory>

namespace cirrovane {

/// Calls a function on the main thread whenever the system says that something has happened, for as long as it lives.
class WorkspaceNotice {
 public:
  enum class Event { motionPreferenceChanged, machineWoke };

  WorkspaceNotice(Event event, std::function<void()> then);
  ~WorkspaceNotice();

  WorkspaceNotice(const WorkspaceNotice&) = delete;
  WorkspaceNotice& operator=(const WorkspaceNotice&) = delete;

 private:
  struct Observation;

  std::unique_ptr<Observation> observation_;
};

}  // namespace cirrovane
