#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QTemporaryDir>

namespace cirrovane::test {

/// A session bus of a test's own, on which nothing runs that the test did not start.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();

  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// The connection of the code under test.
  QDBusConnection connection() const { return connect("client"); }
  /// The connection of the rest of the desktop.
  QDBusConnection desktop() const { return connect("desktop"); }

 private:
  QDBusConnection connect(const char* name) const;

  QTemporaryDir folder_;
  QProcess daemon_;
  QString address_;
};

}  // namespace cirrovane::test
