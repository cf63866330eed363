// Measures `cirrovanectl watch` over a tree: from a change of a file to the line that says it, beside a bare loop that
// reads the same event from the system; from 10,000 changes to the line that counts them all, with the peak of its
// memory; and what it does while nothing happens. Prints lines of: what, how, and the seconds of each repetition, with
// tabs between; of memory, the bytes, and of idleness the ticks.

#include "base/FileDescriptor.h"
#include "bench/PendingFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{60};
/// So that the change before is no part of the same burst.
constexpr std::chrono::milliseconds kPause{150};
constexpr std::size_t kBurstFiles = 10'000;
constexpr std::chrono::seconds kIdleTime{10};

void print(std::string_view what, std::string_view how, const std::vector<double>& numbers) {
  fmt::print("{}\t{}", what, how);
  for (const double number : numbers) {
    fmt::print("\t{:.9f}", number);
  }
  fmt::print("\n");
}

double secondsBetween(Clock::time_point start, Clock::time_point end) {
  return std::chrono::duration<double>(end - start).count();
}

std::int64_t numberAfter(std::string_view text, std::string_view key) {
  const std::size_t at = text.find(key);
  std::int64_t number = -1;
  if (at != std::string_view::npos) {
    std::from_chars(text.data() + at + key.size(), text.data() + text.size(), number);
  }
  return number;
}

/// The program, which watches one folder.
class Watch {
 public:
  Watch(const std::string& program, const std::string& folder) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
      throw std::runtime_error("no pipe");
    }
    lines_ = FileDescriptor(ends[0]);
    const FileDescriptor writer(ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, writer.get(), STDOUT_FILENO);
    std::array<const char*, 5> arguments = {program.c_str(), "watch", "--json", folder.c_str(), nullptr};
    const int error =
        posix_spawn(&process_, program.c_str(), &actions, nullptr, const_cast<char* const*>(arguments.data()), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
      throw std::runtime_error("the program does not start");
    }
    waitFor(0);
  }
  ~Watch() {
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  int descriptor() const { return lines_.get(); }

  /// Waits for a line that counts so many files as pending; gives the time at which it was there.
  Clock::time_point waitFor(std::int64_t pending) {
    while (true) {
      const std::size_t end = text_.find('\n');
      if (end != std::string::npos) {
        const std::int64_t said = numberAfter(text_.substr(0, end), "\"pendingUploads\": ");
        text_.erase(0, end + 1);
        if (said == pending) {
          return heard_;
        }
        continue;
      }
      pollfd source{lines_.get(), POLLIN, 0};
      std::array<char, 65536> buffer{};
      const bool isThere = poll(&source, 1, static_cast<int>(std::chrono::milliseconds(kPatience).count())) > 0;
      heard_ = Clock::now();
      const ssize_t length = isThere ? read(lines_.get(), buffer.data(), buffer.size()) : 0;
      if (length <= 0) {
        throw std::runtime_error(fmt::format("no line says {} pending", pending));
      }
      text_.append(buffer.data(), static_cast<std::size_t>(length));
    }
  }

  double peakBytes() const {
    std::ifstream status(fmt::format("/proc/{}/status", process_));
    const std::string text((std::istreambuf_iterator<char>(status)), {});
    const std::size_t value = text.find_first_of("0123456789", text.find("VmHWM:"));
    return 1024.0 * static_cast<double>(std::stoll(text.substr(value)));
  }
  double ticks() const {
    std::ifstream stat(fmt::format("/proc/{}/stat", process_));
    std::string field;
    std::getline(stat, field, ')');
    double sum = 0;
    for (int number = 3; stat >> field; ++number) {
      sum += number == 14 || number == 15 ? std::stod(field) : 0;
    }
    return sum;
  }

 private:
  FileDescriptor lines_;
  pid_t process_ = -1;
  std::string text_;
  Clock::time_point heard_;
};

/// The system's own word of what changes in one folder.
class BareWatch {
 public:
  explicit BareWatch(const std::filesystem::path& folder) : instance_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (inotify_add_watch(instance_.get(), folder.c_str(), IN_ATTRIB) < 0) {
      throw std::runtime_error("no watch to be had");
    }
  }
  Clock::time_point wait() const {
    pollfd source{instance_.get(), POLLIN, 0};
    poll(&source, 1, -1);
    std::array<char, 4096> buffer{};
    while (read(instance_.get(), buffer.data(), buffer.size()) > 0) {
    }
    return Clock::now();
  }

 private:
  FileDescriptor instance_;
};

/// One file after the other becomes pending: the line, and the system's event of the same change.
void measureChanges(Watch& watch, const std::vector<std::filesystem::path>& files) {
  std::vector<double> lines;
  std::vector<double> events;
  std::vector<std::unique_ptr<PendingFile>> pending;
  pending.push_back(std::make_unique<PendingFile>(files.front()));
  watch.waitFor(1);
  for (std::size_t index = 1; index < files.size(); ++index) {
    std::this_thread::sleep_for(kPause);
    const BareWatch bare(files[index].parent_path());
    const auto start = Clock::now();
    pending.push_back(std::make_unique<PendingFile>(files[index]));
    events.push_back(secondsBetween(start, bare.wait()));
    lines.push_back(secondsBetween(start, watch.waitFor(static_cast<std::int64_t>(index) + 1)));
  }
  print("change", "line", lines);
  print("change", "event", events);
}

/// One file becomes pending where all was safe, which it is again before the next.
void measureTurns(Watch& watch, const std::vector<std::filesystem::path>& files) {
  std::vector<double> lines;
  for (const std::filesystem::path& file : files) {
    std::this_thread::sleep_for(kPause);
    {
      const auto start = Clock::now();
      const PendingFile pending(file);
      lines.push_back(secondsBetween(start, watch.waitFor(1)));
    }
    watch.waitFor(0);
  }
  print("turn", "line", lines);
}

void measureBursts(Watch& watch, const std::vector<std::filesystem::path>& files, std::size_t repetitions) {
  std::vector<double> bursts;
  std::vector<double> ends;
  for (std::size_t repetition = 0; repetition < repetitions; ++repetition) {
    std::vector<std::unique_ptr<PendingFile>> pending;
    const auto start = Clock::now();
    for (const std::filesystem::path& file : files) {
      pending.push_back(std::make_unique<PendingFile>(file));
    }
    const auto made = Clock::now();
    const auto heard = watch.waitFor(static_cast<std::int64_t>(files.size()));
    bursts.push_back(secondsBetween(made, heard));
    ends.push_back(secondsBetween(start, made));
    pending.clear();
    watch.waitFor(0);
  }
  print("burst", "line", bursts);
  print("burst", "changes", ends);
  print("memory", "peak", {watch.peakBytes()});
}

void measureIdleness(const Watch& watch, std::size_t repetitions) {
  std::vector<double> ticks;
  for (std::size_t repetition = 0; repetition < repetitions; ++repetition) {
    std::this_thread::sleep_for(1s);
    const double before = watch.ticks();
    std::this_thread::sleep_for(kIdleTime);
    ticks.push_back(watch.ticks() - before);
  }
  print("idle", "ticks", ticks);
}

int run(const std::vector<std::string>& arguments) {
  const std::string& what = arguments.at(0);
  const std::string& folder = arguments.at(2);
  const std::size_t repetitions = std::stoul(arguments.at(3));
  if (what == "idle") {
    measureIdleness(Watch(arguments[1], folder), repetitions);
    return 0;
  }
  const std::vector<std::filesystem::path> files =
      someFiles(folder, what == "burst" ? kBurstFiles : repetitions + (what == "change" ? 1 : 0));
  Watch watch(arguments[1], folder);
  if (what == "change") {
    measureChanges(watch, files);
  } else if (what == "turn") {
    measureTurns(watch, files);
  } else {
    measureBursts(watch, files, repetitions);
  }
  return 0;
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  const std::string_view what = argumentCount == 5 ? arguments[1] : "";
  if (what != "change" && what != "turn" && what != "burst" && what != "idle") {
    std::fputs("Usage: live_bench change|turn|burst|idle PROGRAM FOLDER REPETITIONS\n", stderr);
    return 2;
  }
  try {
    return cirrovane::run({arguments + 1, arguments + argumentCount});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "live_bench: %s\n", error.what());
    return 1;
  }
}
