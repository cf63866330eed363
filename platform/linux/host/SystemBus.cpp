#include "platform/linux/host/SystemBus.h"

#include "base/DisplayText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <string_view>
#include <systemd/sd-bus.h>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

/// Of what somebody else's program says no more is shown.
constexpr std::size_t kLongestExplanation = 300;

constexpr std::array<std::string_view, 5> kSilences = {SD_BUS_ERROR_NO_REPLY, SD_BUS_ERROR_TIMEOUT,
                                                       SD_BUS_ERROR_DISCONNECTED, "System.Error.ETIMEDOUT",
                                                       "System.Error.ECONNRESET"};

BusFailure failureOf(const sd_bus_error& error) {
  const std::string_view name = error.name != nullptr ? error.name : "";
  if (std::ranges::find(kSilences, name) != kSilences.end()) {
    return {"The system's login service does not answer.", true};
  }
  if (name == SD_BUS_ERROR_SERVICE_UNKNOWN || name == SD_BUS_ERROR_NAME_HAS_NO_OWNER ||
      name.starts_with("org.freedesktop.DBus.Error.Spawn.") || name.starts_with("org.freedesktop.systemd1.")) {
    return {"This system has no login service (logind)."};
  }
  if (name == SD_BUS_ERROR_INTERACTIVE_AUTHORIZATION_REQUIRED) {
    return {"The system asks for an administrator's password for that."};
  }
  if (name == SD_BUS_ERROR_ACCESS_DENIED || name == SD_BUS_ERROR_AUTH_FAILED) {
    return {"The system does not allow it."};
  }
  std::string explanation =
      displayText(std::string_view(error.message != nullptr ? error.message : "").substr(0, kLongestExplanation));
  while (explanation.ends_with('.')) {
    explanation.pop_back();
  }
  return {explanation.empty() ? "The system refuses it." : fmt::format("The system refuses it: {}.", explanation)};
}

BusFailure failureToSend(int error) {
  if (error == -ENOTCONN || error == -ECONNRESET) {
    return {"The system's message bus has gone.", true};
  }
  return {"The system's message bus does not take the call."};
}

int hand(sd_bus_message* message, void* handler, sd_bus_error* /*failure*/) {
  (*static_cast<SystemBus::Handler*>(handler))(BusMessage(message));
  return 0;
}

void deleteHandler(void* handler) {
  delete static_cast<SystemBus::Handler*>(handler);
}

/// Has the handler live as long as the connection waits for messages for it.
void leaveToBus(sd_bus_slot* slot, std::unique_ptr<SystemBus::Handler> handler) {
  sd_bus_slot_set_destroy_callback(slot, deleteHandler);
  [[maybe_unused]] const SystemBus::Handler* const owned = handler.release();
  sd_bus_slot_set_floating(slot, 1);
  sd_bus_slot_unref(slot);
}

}  // namespace

std::optional<BusFailure> BusMessage::failure() const {
  const sd_bus_error* error = message_ != nullptr ? sd_bus_message_get_error(message_) : nullptr;
  return error != nullptr ? failureOf(*error) : failure_;
}

std::optional<bool> BusMessage::boolean() {
  int value = 0;
  return sd_bus_message_read_basic(message_, SD_BUS_TYPE_BOOLEAN, &value) > 0 ? std::optional(value != 0)
                                                                              : std::nullopt;
}

std::optional<std::string> BusMessage::text() {
  const char* value = nullptr;
  return sd_bus_message_read_basic(message_, SD_BUS_TYPE_STRING, static_cast<void*>(&value)) > 0
             ? std::optional<std::string>(value)
             : std::nullopt;
}

std::optional<std::uint64_t> BusMessage::propertyNumber() {
  std::uint64_t value = 0;
  return sd_bus_message_read(message_, "v", "t", &value) > 0 ? std::optional(value) : std::nullopt;
}

std::optional<FileDescriptor> BusMessage::descriptor() {
  // The message owns it.
  int lent = -1;
  if (sd_bus_message_read_basic(message_, SD_BUS_TYPE_UNIX_FD, &lent) <= 0) {
    return std::nullopt;
  }
  FileDescriptor copy(fcntl(lent, F_DUPFD_CLOEXEC, 0));
  return copy.isOpen() ? std::optional(std::move(copy)) : std::nullopt;
}

Result<std::unique_ptr<SystemBus>> SystemBus::open() {
  sd_bus* bus = nullptr;
  if (sd_bus_open_system(&bus) < 0) {
    return Failure{"The system's message bus cannot be reached."};
  }
  return std::unique_ptr<SystemBus>(new SystemBus(bus));
}

SystemBus::~SystemBus() {
  sd_bus_close_unref(bus_);
}

void SystemBus::call(const BusObject& object, const char* method, const std::vector<std::string>& texts,
                     milliseconds limit, Handler handler) {
  sd_bus_message* message = nullptr;
  int made = sd_bus_message_new_method_call(bus_, &message, object.service, object.path, object.interface, method);
  for (const std::string& text : texts) {
    made = made < 0 ? made : sd_bus_message_append_basic(message, SD_BUS_TYPE_STRING, text.c_str());
  }
  send(message, made, limit, std::move(handler));
}

void SystemBus::call(const BusObject& object, const char* method, bool argument, milliseconds limit, Handler handler) {
  sd_bus_message* message = nullptr;
  const int value = argument ? 1 : 0;
  int made = sd_bus_message_new_method_call(bus_, &message, object.service, object.path, object.interface, method);
  made = made < 0 ? made : sd_bus_message_append_basic(message, SD_BUS_TYPE_BOOLEAN, &value);
  send(message, made, limit, std::move(handler));
}

void SystemBus::hear(const BusObject& object, const char* signal, Handler handler) {
  auto owned = std::make_unique<Handler>(std::move(handler));
  sd_bus_slot* slot = nullptr;
  if (sd_bus_match_signal_async(bus_, &slot, object.service, object.path, object.interface, signal, hand, nullptr,
                                owned.get()) >= 0) {
    leaveToBus(slot, std::move(owned));
  }
}

void SystemBus::hearOwner(const std::string& service, std::function<void(bool)> handler) {
  constexpr BusObject kBus = {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
  hear(kBus, "NameOwnerChanged", [service, handler = std::move(handler)](BusMessage message) {
    const auto name = message.text();
    const auto former = message.text();
    const auto present = message.text();
    if (name != service || !former || !present) {
      return;
    }
    if (!former->empty()) {
      handler(false);
    }
    if (!present->empty()) {
      handler(true);
    }
  });
}

int SystemBus::descriptor() const {
  return sd_bus_get_fd(bus_);
}

short SystemBus::events() const {
  return static_cast<short>(std::max(sd_bus_get_events(bus_), 0));
}

std::optional<milliseconds> SystemBus::timeout() const {
  std::uint64_t due = 0;
  if (sd_bus_get_timeout(bus_, &due) < 0 || due == UINT64_MAX) {
    return std::nullopt;
  }
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto passed = std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
  const auto left = std::chrono::ceil<milliseconds>(microseconds(due) - passed);
  return std::max(left, milliseconds(0));
}

bool SystemBus::process() {
  int done = 0;
  do {
    done = sd_bus_process(bus_, nullptr);
  } while (done > 0);
  return done == 0 && sd_bus_is_open(bus_) > 0;
}

void SystemBus::send(sd_bus_message* message, int made, milliseconds limit, Handler handler) {
  auto owned = std::make_unique<Handler>(std::move(handler));
  sd_bus_slot* slot = nullptr;
  const int sent =
      made < 0 ? made
               : sd_bus_call_async(bus_, &slot, message, hand, owned.get(),
                                   static_cast<std::uint64_t>(std::chrono::duration_cast<microseconds>(limit).count()));
  sd_bus_message_unref(message);
  if (sent < 0) {
    (*owned)(BusMessage(failureToSend(sent)));
  } else {
    leaveToBus(slot, std::move(owned));
  }
}

}  // namespace cirrovane
