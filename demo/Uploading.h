#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane::demo {

/// A while in which nothing leaves, counted from the start.
struct UploadPause {
  std::chrono::nanoseconds start{0};
  std::chrono::nanoseconds length{0};
};

/// How pending files leave.
struct UploadPlan {
  double bytesPerSecond = 0;
  /// Files whose path holds one of these never leave.
  std::vector<std::string> stuck;
  std::vector<UploadPause> pauses;
};

/// A file that has yet to leave.
struct WaitingFile {
  std::filesystem::path path;
  std::uintmax_t size = 0;
};

/// The pending files of a folder and all below it, in the order of their paths. No symbolic link is followed.
std::vector<WaitingFile> waitingFiles(const std::filesystem::path& folder);

/// When something that takes `busy` to send, all before it included, has left, the pauses counted in.
std::chrono::nanoseconds timeWithPauses(std::chrono::nanoseconds busy, std::vector<UploadPause> pauses);

/// What an upload came to.
struct UploadOutcome {
  std::size_t left = 0;
  std::size_t stayed = 0;
  bool wasStopped = false;
};

/// Waits until so long after the start; false when it is to stop.
using WaitUntil = std::function<bool(std::chrono::nanoseconds sinceStart)>;
/// Is told of each file that left, and how many still will.
using TellUploaded = std::function<void(const WaitingFile& file, std::size_t waiting)>;

/// Makes the folder's pending files uploaded, one after another as the plan has it, those that come meanwhile included.
/// A file's state changes in one step, at the moment at which it has left.
UploadOutcome upload(const std::filesystem::path& folder, const UploadPlan& plan, const WaitUntil& waitUntil,
                     const TellUploaded& tell);

}  // namespace cirrovane::demo
