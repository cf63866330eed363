#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cirrovane {

/// What the system says of a change, as bits with the system's own numbers.
namespace stream_flag {
inline constexpr std::uint32_t mustScanSubDirs = 0x1;
inline constexpr std::uint32_t userDropped = 0x2;
inline constexpr std::uint32_t kernelDropped = 0x4;
inline constexpr std::uint32_t eventIdsWrapped = 0x8;
inline constexpr std::uint32_t historyDone = 0x10;
inline constexpr std::uint32_t rootChanged = 0x20;
inline constexpr std::uint32_t mount = 0x40;
inline constexpr std::uint32_t unmount = 0x80;
inline constexpr std::uint32_t itemCreated = 0x100;
inline constexpr std::uint32_t itemRemoved = 0x200;
inline constexpr std::uint32_t itemRenamed = 0x800;
inline constexpr std::uint32_t itemIsDir = 0x20000;
}  // namespace stream_flag

/// One change of the system's stream.
struct StreamEvent {
  /// The item's path without any link in it.
  std::string path;
  std::uint32_t flags = 0;
};

/// The system's account of changes, which goes on until this is destroyed, on the queue that it tells on.
class EventStream {
 public:
  virtual ~EventStream() = default;
  /// Asks for what is held back to be told soon.
  virtual void flush() = 0;
};

/// Runs tasks one after another, in order.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;
  virtual void post(std::function<void()> task) = 0;
  /// The time does not go on while the machine sleeps.
  virtual void postAfter(std::chrono::seconds delay, std::function<void()> task) = 0;
  /// Runs the task after those that were posted before, and waits for its end. Not called within a task.
  virtual void runAndWait(std::function<void()> task) = 0;
};

/// What a watch by a stream needs of the system. All of it is called on the queue.
struct StreamSystem {
  /// Begins an account of what changes below these paths from now on; nullptr when the system refuses.
  std::function<std::unique_ptr<EventStream>(const std::vector<std::string>& paths,
                                             std::function<void(std::vector<StreamEvent>)> tell)>
      makeStream;
  /// A path without any link in it; the path itself where it leads nowhere.
  std::function<std::string(const std::string& path)> withoutLinks;
  /// Whether a folder is shown to the user as one document.
  std::function<bool(const std::string& path)> isPackage;
};

}  // namespace cirrovane
