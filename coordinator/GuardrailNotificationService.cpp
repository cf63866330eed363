#include "coordinator/GuardrailNotificationService.h"

#include "base/UUID.h"
#include "coordinator/DefaultsKeys.h"

#include <memory>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// A step of the way from a new verdict to a remembered one. Each step is given the next, since the centre answers when
/// it pleases. It refers to nothing of the service, which may be gone by then.
using Step = std::function<void()>;

void requestPermissionIfNeeded(NotificationCenter& center, Step then) {
  center.readAuthorization([&center, then = std::move(then)](NotificationAuthorization authorization) {
    if (authorization == NotificationAuthorization::notDetermined) {
      center.requestAuthorization(then);
    } else {
      then();
    }
  });
}

void enqueue(NotificationCenter& center, std::string title, std::string body, Step then) {
  center.add({UUIDGenerator()().text(), std::move(title), std::move(body)}, std::move(then));
}

void enqueueTransition(NotificationCenter& center, const SyncHealthReport& report, Step then) {
  if (report.safeToClose) {
    enqueue(center, "Cirrovane is now safe", "All core criteria are passing. Safe to close is now green.",
            std::move(then));
    return;
  }
  const std::string_view topIssue =
      report.blockers.empty() ? "Blocking issue" : displayTitle(report.blockers.front().reason);
  enqueue(center, "Cirrovane needs attention", fmt::format("Safe to close is now red/yellow. Top issue: {}.", topIssue),
          std::move(then));
}

}  // namespace

void GuardrailNotificationService::notifyStatusTransition(std::optional<bool> previousSafe,
                                                          Shared<SyncHealthReport> report, std::function<void()> then) {
  if (!userDefaults_.choice(kGuardrailNotificationsEnabledKey).value_or(false)) {
    then();
    return;
  }
  const Step remember = [&defaults = userDefaults_, safe = report->safeToClose, then] {
    // A verdict that could not be stored is told once more, which is better than not at all.
    static_cast<void>(defaults.set(kLastKnownSafeToCloseKey, safe));
    then();
  };
  NotificationCenter* center = notificationCenter();
  if (center == nullptr) {
    remember();
    return;
  }
  requestPermissionIfNeeded(*center, [center, previousSafe, report = std::move(report), remember, then] {
    if (!previousSafe) {
      remember();
    } else if (report->safeToClose == *previousSafe) {
      then();
    } else {
      enqueueTransition(*center, *report, remember);
    }
  });
}

NotificationCenter* GuardrailNotificationService::notificationCenter() const {
  return isApplicationBundle(bundle_) ? &notificationCenter_ : nullptr;
}

}  // namespace cirrovane
