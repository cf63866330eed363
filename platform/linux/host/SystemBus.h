#pragma once

#include "base/FileDescriptor.h"
#include "base/Result.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct sd_bus;
struct sd_bus_message;

namespace cirrovane {

/// Why a call on the bus came to nothing.
struct BusFailure {
  /// One sentence for a person.
  std::string words;
  /// Whether there was no answer at all, so that there may be one later.
  bool isSilence = false;
};

/// An answer or a signal, for as long as its handler runs.
class BusMessage {
 public:
  explicit BusMessage(sd_bus_message* message) : message_(message) {}
  /// The answer to a call that did not even get onto the bus.
  explicit BusMessage(BusFailure failure) : message_(nullptr), failure_(std::move(failure)) {}

  /// Absent for a signal, and for an answer that is none.
  std::optional<BusFailure> failure() const;

  // Each of these reads the next value; absent when that is of another kind.
  std::optional<bool> boolean();
  std::optional<std::string> text();
  /// A number that is wrapped as the value of a property.
  std::optional<std::uint64_t> propertyNumber();
  /// A copy that no child inherits.
  std::optional<FileDescriptor> descriptor();

 private:
  sd_bus_message* message_;
  std::optional<BusFailure> failure_;
};

/// An object of the bus and one of its interfaces.
struct BusObject {
  const char* service;
  const char* path;
  const char* interface;
};

/// A connection to the machine's message bus, or to the one that DBUS_SYSTEM_BUS_ADDRESS names. All of it, its handlers
/// too, belongs to one thread. Handlers may call it, but not end it.
class SystemBus {
 public:
  using Handler = std::function<void(BusMessage)>;

  static Result<std::unique_ptr<SystemBus>> open();
  /// Ends the connection and all that is under way on it; no handler is called any more.
  ~SystemBus();
  SystemBus(const SystemBus&) = delete;
  SystemBus& operator=(const SystemBus&) = delete;

  /// Calls a method with texts as its arguments. The handler gets the answer, or a failure when so much time is up, or
  /// at once.
  void call(const BusObject& object, const char* method, const std::vector<std::string>& texts,
            std::chrono::milliseconds limit, Handler handler);
  /// The same with a yes or no as the argument.
  void call(const BusObject& object, const char* method, bool argument, std::chrono::milliseconds limit,
            Handler handler);
  /// Has the handler hear a signal, as long as the connection lives.
  void hear(const BusObject& object, const char* signal, Handler handler);
  /// Has the handler hear when a service comes (true) or goes; a service that is replaced does both.
  void hearOwner(const std::string& service, std::function<void(bool isThere)> handler);

  // What to wait for before the next `process`.
  int descriptor() const;
  short events() const;
  /// For how long at most; absent for as long as it takes.
  std::optional<std::chrono::milliseconds> timeout() const;

  /// Does what is due, and calls handlers. False when the connection is lost.
  bool process();

 private:
  explicit SystemBus(sd_bus* bus) : bus_(bus) {}

  /// Sends the message, which it then owns; `made` is negative where there is none to send.
  void send(sd_bus_message* message, int made, std::chrono::milliseconds limit, Handler handler);

  sd_bus* bus_;
};

}  // namespace cirrovane
