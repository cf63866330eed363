#pragma once

#include "platform/Bundle.h"
#include "platform/NotificationCenter.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace cirrovane {

/// The system's notification centre. The system gives none to a program outside of an application bundle; there
/// nothing is shown, and the user counts as having declined.
class MacNotificationCenter final : public NotificationCenter {
 public:
  explicit MacNotificationCenter(const Bundle& bundle);
  ~MacNotificationCenter() override;

  MacNotificationCenter(const MacNotificationCenter&) = delete;
  MacNotificationCenter& operator=(const MacNotificationCenter&) = delete;

  /// Has a function called on the main thread whenever the user clicks on a notification of ours.
  void onActivated(std::function<void()> activated);

  void readAuthorization(std::function<void(NotificationAuthorization)> then) override;
  void requestAuthorization(std::function<void()> then) override;
  void add(const Notification& notification, std::function<void()> then) override;
  std::optional<std::string> settingsAddress() const override;

 private:
  struct Center;

  std::unique_ptr<Center> center_;
};

}  // namespace cirrovane
