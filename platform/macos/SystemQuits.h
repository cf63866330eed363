#pragma once

#include "platform/macos/plain/AnnouncedPowerGate.h"

#include <memory>

namespace cirrovane {

/// Hears when the system itself ends this application. Made and ended on the main thread, after the toolkit has made
/// the application's delegate.
///
/// The toolkit owns that delegate. A proxy takes its place, answers a quit that the system asks for, and hands every
/// other message on to the toolkit's, the user's own Quit among them. The application keeps no delegate alive, so this
/// does, and puts the toolkit's back at its end.
class SystemQuits {
 public:
  SystemQuits();
  ~SystemQuits();

  SystemQuits(const SystemQuits&) = delete;
  SystemQuits& operator=(const SystemQuits&) = delete;

  /// As PowerSystem::hearQuits. What it gives may outlive this. The last one hears.
  std::unique_ptr<PowerNotices> hear(PowerSystem::QuitAsked ask) const;

 private:
  struct Proxy;
  class Hearing;

  const std::unique_ptr<Proxy> proxy_;
};

}  // namespace cirrovane
