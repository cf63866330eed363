#include "tests/platform_qt/PrivateBus.h"

#include <QFile>
#include <stdexcept>

namespace cirrovane::test {
namespace {

/// Names no folder of services, so that the bus starts none by itself.
const char* const kConfiguration = R"(
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

PrivateBus::PrivateBus() {
  QFile configuration(folder_.filePath("bus.conf"));
  if (!configuration.open(QIODevice::WriteOnly) ||
      configuration.write(QString(kConfiguration).arg(folder_.path()).toUtf8()) < 0) {
    throw std::runtime_error("The configuration of the bus could not be written.");
  }
  configuration.close();
  daemon_.start("dbus-daemon", {"--config-file=" + configuration.fileName(), "--nofork", "--print-address"});
  while (!daemon_.canReadLine()) {
    if (!daemon_.waitForReadyRead()) {
      throw std::runtime_error("dbus-daemon did not start: " + daemon_.readAllStandardError().toStdString());
    }
  }
  address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
  QDBusConnection::disconnectFromBus("client");
  QDBusConnection::disconnectFromBus("desktop");
  daemon_.kill();
  daemon_.waitForFinished();
}

QDBusConnection PrivateBus::connect(const char* name) const {
  const QDBusConnection known(name);
  return known.isConnected() ? known : QDBusConnection::connectToBus(address_, name);
}

}  // namespace cirrovane::test
