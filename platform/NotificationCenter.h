#pragma once

#include <functional>
#include <optional>
#include <string>

namespace cirrovane {

/// What the user has said to notifications from this program.
enum class NotificationAuthorization { notDetermined, denied, authorized };

/// A notification for the user, to be shown at once, with the default sound.
struct Notification {
  /// Unique; another notification of the same identifier would replace it.
  std::string identifier;
  std::string title;
  std::string body;
};

/// Shows notifications to the user. Main thread only. Nothing here blocks: each call answers by calling `then` on the
/// main thread, soon or much later; what fails is answered like what succeeds.
class NotificationCenter {
 public:
  virtual ~NotificationCenter() = default;
  virtual void readAuthorization(std::function<void(NotificationAuthorization)> then) = 0;
  /// Asks the user for notifications with alerts and sound; `then` is called when the user has answered.
  virtual void requestAuthorization(std::function<void()> then) = 0;
  virtual void add(const Notification& notification, std::function<void()> then) = 0;
  /// The address of the page where the user allows them in the system's settings; absent where none is known.
  virtual std::optional<std::string> settingsAddress() const = 0;
};

}  // namespace cirrovane
