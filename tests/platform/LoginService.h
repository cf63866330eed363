#pragma once

#include "tests/cli/Watching.h"
#include "tests/support/TemporaryFolder.h"

#include <optional>
#include <string>
#include <vector>

namespace cirrovane::test {

/// A message bus of a test's own in the place of the machine's, for as long as it lives.
class OwnSystemBus {
 public:
  OwnSystemBus();
  ~OwnSystemBus();
  OwnSystemBus(const OwnSystemBus&) = delete;
  OwnSystemBus& operator=(const OwnSystemBus&) = delete;

  std::string address() const { return "unix:path=" + folder_ / "bus"; }
  void start();
  void kill() { daemon_.reset(); }

 private:
  const TemporaryFolder folder_;
  std::optional<Watching> daemon_;
};

/// Plays logind on the bus (logind.py) and tells line by line what becomes of it.
class LoginService {
 public:
  explicit LoginService(const std::string& parameters = "{}");

  /// The next line.
  std::string next() { return process_.nextText(); }
  /// Everything that was told so far.
  std::vector<std::string> heard() const;
  /// Returns when the service has dealt with all that came before.
  void settle() const { control("SetAnswer", {"nothing", "yes"}); }
  void answer(const std::string& method, const std::string& kind) const { control("SetAnswer", {method, kind}); }
  void announce(const std::string& act) const { control("Announce", {act}); }
  void stay() const { control("Stay", {}); }

 private:
  static void control(const char* method, const std::vector<std::string>& texts);

  Watching process_;
};

}  // namespace cirrovane::test
