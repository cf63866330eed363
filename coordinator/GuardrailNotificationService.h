#pragma once

#include "base/Shared.h"
#include "core/SyncHealthReport.h"
#include "platform/Bundle.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"

#include <functional>
#include <optional>
#include <string>

namespace cirrovane {

/// Tells the user when the verdict flips between safe and unsafe, and remembers the last verdict across launches. Main
/// thread only.
class GuardrailNotificationService {
 public:
  /// All three outlive every notification that is under way.
  GuardrailNotificationService(NotificationCenter& notificationCenter, const Bundle& bundle, UserDefaults& userDefaults)
      : notificationCenter_(notificationCenter), bundle_(bundle), userDefaults_(userDefaults) {}

  /// Posts a notification when the report's verdict is another than the previous one, and remembers it. The first
  /// verdict ever is only remembered; with notifications switched off nothing is, so that the next change is judged by
  /// what the user last knew. Never fails; `then` is called when everything is done.
  void notifyStatusTransition(
      std::optional<bool> previousSafe, Shared<SyncHealthReport> report, std::function<void()> then = [] {});

 private:
  /// The system's centre; nullptr for a bare executable, which has no right to notify.
  NotificationCenter* notificationCenter() const;

  NotificationCenter& notificationCenter_;
  const Bundle& bundle_;
  UserDefaults& userDefaults_;
};

}  // namespace cirrovane
