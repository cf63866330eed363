#include "cli/ProgressLine.h"

#include "core/DisplayText.h"
#include "platform/UTF8.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kInterval{100};
constexpr const char* kEraseLine = "\r\x1b[K";

/// The end of a path, which tells more than its beginning, in at most `width` characters.
std::string tail(const std::string& path, std::size_t width) {
  std::size_t count = 0;
  std::size_t start = path.size();
  while (start > 0 && count < width) {
    // Back to where a character begins: the bytes after its first look like no beginning.
    do {
      --start;
    } while (start > 0 && (static_cast<unsigned char>(path[start]) & 0xC0U) == 0x80U);
    ++count;
  }
  return start == 0 ? path : "…" + path.substr(start);
}

}  // namespace

ProgressLine::ProgressLine(const ScanProgress& progress, Output& out) : progress_(progress), out_(out) {
  if (out_.isTerminal()) {
    thread_ = std::thread([this] { showUntilOver(); });
  }
}

ProgressLine::~ProgressLine() {
  if (!thread_.joinable()) {
    return;
  }
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void ProgressLine::showUntilOver() {
  const auto start = steady_clock::now();
  const auto isOver = [this] { return isOver_; };
  std::unique_lock lock(mutex_);
  if (ended_.wait_for(lock, kPatience, isOver)) {
    return;
  }
  do {
    draw(steady_clock::now() - start);
  } while (!ended_.wait_for(lock, kInterval, isOver));
  out_.write(kEraseLine);
}

void ProgressLine::draw(std::chrono::duration<double> elapsed) {
  const std::int64_t files = progress_.files();
  const std::string counts =
      fmt::format("Scanning: {} files, {:.0f} a second  ", files, static_cast<double>(files) / elapsed.count());
  // A line that reached the terminal's last column would wrap, and could not be erased.
  const std::size_t width = out_.columns() > counts.size() + 2 ? out_.columns() - counts.size() - 2 : 0;
  out_.write(kEraseLine + counts + tail(displayText(progress_.folder()), width));
}

}  // namespace cirrovane
