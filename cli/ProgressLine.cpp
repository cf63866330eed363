#include "cli/ProgressLine.h"

#include "base/DisplayText.h"

#include <cstddef>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kInterval{100};

bool isBeginningOfCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/// Where the longest end of a text begins that fits into `width` columns of a terminal.
std::size_t startOfEnd(const std::string& text, std::size_t width) {
  std::size_t start = text.size();
  std::size_t columns = 0;
  for (std::size_t next = start; next > 0; start = next) {
    do {
      --next;
    } while (next > 0 && !isBeginningOfCharacter(text[next]));
    // Outside ASCII a character may be two columns wide.
    columns += static_cast<unsigned char>(text[next]) < 0x80U ? 1U : 2U;
    if (columns > width) {
      break;
    }
  }
  return start;
}

/// The end of a path, which tells more than its beginning, in at most `width` columns.
std::string end(const std::string& path, std::size_t width) {
  if (startOfEnd(path, width) == 0) {
    return path;
  }
  return width < 2 ? "" : "…" + path.substr(startOfEnd(path, width - 2));
}

}  // namespace

ProgressLine::ProgressLine(const ScanProgress& progress, Output& out) : progress_(progress), out_(out) {
  if (out_.isErasable()) {
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
  // A line that reached the terminal's last column would wrap, and could not be erased.
  const std::size_t width = out_.columns() - 1;
  const std::int64_t files = progress_.files();
  const std::string counts =
      fmt::format("Scanning: {} files, {:.0f} a second  ", files, static_cast<double>(files) / elapsed.count())
          .substr(0, width);
  out_.write(kEraseLine + counts + end(displayText(progress_.folder()), width - counts.size()));
}

}  // namespace cirrovane
