#pragma once

#include "base/Result.h"

#include <optional>

namespace cirrovane {

/// Whether the system opens this program when its user logs in.
enum class LoginItemState {
  off,
  on,
  /// It was asked to, and waits for the user's approval in the system's own settings.
  needsApproval,
};

/// This program among those that the system opens at login. Main thread only. The user can change it elsewhere at any
/// time, so nothing is remembered here.
class LoginItem {
 public:
  virtual ~LoginItem() = default;
  /// A failure says why this program cannot be opened at login at all.
  virtual Result<LoginItemState> state() const = 0;
  /// Asks the system for it, or takes that back. What came of it, state() says.
  virtual std::optional<Failure> setOn(bool isOn) = 0;
  /// Whether openSystemSettings() leads anywhere.
  virtual bool hasSystemSettings() const = 0;
  /// Opens the page of the system's settings where the user approves.
  virtual void openSystemSettings() = 0;
};

}  // namespace cirrovane
