#include "tests/platform/LoginService.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <systemd/sd-bus.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

constexpr const char* kAddressVariable = "DBUS_SYSTEM_BUS_ADDRESS";

/// Names no folder of services, so that the bus starts none by itself.
constexpr const char* kConfiguration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>{}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

// The socket's path has to be short.
OwnSystemBus::OwnSystemBus() : folder_(std::filesystem::temp_directory_path()) {
  writeFile(folder_ / "bus.conf", fmt::format(kConfiguration, address()));
  start();
  setenv(kAddressVariable, address().c_str(), 1);
}

OwnSystemBus::~OwnSystemBus() {
  setenv(kAddressVariable, "unix:path=/nonexistent/bus", 1);
}

void OwnSystemBus::start() {
  std::filesystem::remove(folder_ / "bus");
  daemon_.emplace("/usr/bin/dbus-daemon",
                  std::vector<std::string>{"--config-file=" + folder_ / "bus.conf", "--nofork", "--print-address"});
  EXPECT_NE(daemon_->nextText(), "");
}

LoginService::LoginService(const std::string& parameters)
    : process_("/usr/bin/python3",
               {"-B", "-m", "dbusmock", "--system", "--template", CIRROVANE_SOURCE_DIR "/tests/platform/logind.py",
                "--parameters", parameters, "--logfile", "/dev/null"}) {
  EXPECT_EQ(next(), "ready");
  // It answers from now on.
  settle();
}

std::vector<std::string> LoginService::heard() const {
  std::vector<std::string> lines;
  for (const HeardLine& line : process_.heard()) {
    lines.push_back(line.text);
  }
  return lines;
}

void LoginService::control(const char* method, const std::vector<std::string>& texts) {
  sd_bus* bus = nullptr;
  sd_bus_message* message = nullptr;
  sd_bus_error error{};
  if (sd_bus_open_system(&bus) < 0 ||
      sd_bus_message_new_method_call(bus, &message, "org.freedesktop.login1", "/org/freedesktop/login1",
                                     "org.freedesktop.DBus.Mock", method) < 0) {
    throw std::runtime_error("no bus");
  }
  for (const std::string& text : texts) {
    sd_bus_message_append_basic(message, SD_BUS_TYPE_STRING, text.c_str());
  }
  const int called = sd_bus_call(bus, message, 0, &error, nullptr);
  EXPECT_GE(called, 0) << method << ": " << (error.message != nullptr ? error.message : "");
  sd_bus_error_free(&error);
  sd_bus_message_unref(message);
  sd_bus_close_unref(bus);
}

}  // namespace cirrovane::test
