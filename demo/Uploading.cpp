#include "demo/Uploading.h"

#include "demo/CloudAttribute.h"

#include <algorithm>
#include <system_error>

namespace cirrovane::demo {
namespace {

namespace fs = std::filesystem;

bool isStuck(const WaitingFile& file, const UploadPlan& plan) {
  return std::ranges::any_of(
      plan.stuck, [&](const std::string& name) { return file.path.native().find(name) != std::string::npos; });
}

/// Whether it was still there and pending.
bool markUploaded(const fs::path& path) {
  if (!fs::exists(fs::symlink_status(path))) {
    return false;
  }
  std::optional<CloudState> state = readCloudState(path);
  if (!state || !state->isPending()) {
    return false;
  }
  state->setUploaded();
  writeCloudState(path, *state);
  return true;
}

}  // namespace

std::vector<WaitingFile> waitingFiles(const fs::path& folder) {
  std::vector<WaitingFile> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const fs::file_status status = entry.symlink_status();
    if (!fs::is_regular_file(status) && !fs::is_directory(status)) {
      continue;
    }
    const std::optional<CloudState> state = readCloudState(entry.path());
    if (state && state->isPending()) {
      files.push_back({entry.path(), fs::is_regular_file(status) ? entry.file_size() : 0});
    }
  }
  std::ranges::sort(files, {}, &WaitingFile::path);
  return files;
}

std::chrono::nanoseconds timeWithPauses(std::chrono::nanoseconds busy, std::vector<UploadPause> pauses) {
  std::ranges::sort(pauses, {}, &UploadPause::start);
  std::chrono::nanoseconds time = busy;
  std::chrono::nanoseconds over{0};
  for (const UploadPause& pause : pauses) {
    // Of pauses that overlap, what is over already counts once.
    const std::chrono::nanoseconds start = std::max(pause.start, over);
    if (start >= time) {
      break;
    }
    const std::chrono::nanoseconds end = pause.start + pause.length;
    time += std::max(end - start, std::chrono::nanoseconds(0));
    over = std::max(over, end);
  }
  return time;
}

UploadOutcome upload(const fs::path& folder, const UploadPlan& plan, const WaitUntil& waitUntil,
                     const TellUploaded& tell) {
  UploadOutcome outcome;
  double sent = 0;
  const auto arrival = [&] {
    const std::chrono::duration<double> busy(sent / plan.bytesPerSecond);
    return timeWithPauses(std::chrono::duration_cast<std::chrono::nanoseconds>(busy), plan.pauses);
  };
  while (true) {
    std::vector<WaitingFile> files = waitingFiles(folder);
    const std::size_t all = files.size();
    std::erase_if(files, [&](const WaitingFile& file) { return isStuck(file, plan); });
    outcome.stayed = all - files.size();
    if (files.empty()) {
      return outcome;
    }
    for (std::size_t index = 0; index < files.size(); ++index) {
      sent += static_cast<double>(files[index].size);
      if (!waitUntil(arrival())) {
        outcome.stayed += files.size() - index;
        outcome.wasStopped = true;
        return outcome;
      }
      if (markUploaded(files[index].path)) {
        ++outcome.left;
        tell(files[index], files.size() - index - 1);
      }
    }
  }
}

}  // namespace cirrovane::demo
