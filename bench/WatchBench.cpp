// What a watch costs: from a write to the listener's call beside a bare loop that reads the event, and a watched first
// scan beside a scan alone. Prints lines of: what, how, and the seconds of each repetition, with tabs between; of
// memory, the bytes.

#include "base/FileDescriptor.h"
#include "platform/FolderWatch.h"
#include "platform/Machine.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <malloc.h>
#include <memory>
#include <mutex>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{30};

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void print(std::string_view what, std::string_view how, const std::vector<double>& numbers) {
  fmt::print("{}\t{}", what, how);
  for (const double number : numbers) {
    fmt::print("\t{:.9f}", number);
  }
  fmt::print("\n");
}

/// Lets one thread wait for what another hears.
class Signal {
 public:
  void raise() {
    {
      const std::lock_guard lock(mutex_);
      ++count_;
      at_ = Clock::now();
    }
    raised_.notify_all();
  }
  /// When it was raised next; from the count that was taken before.
  Clock::time_point waitBeyond(int count) {
    std::unique_lock lock(mutex_);
    if (!raised_.wait_for(lock, kPatience, [&] { return count_ > count; })) {
      throw std::runtime_error("nothing is told");
    }
    return at_;
  }
  int count() {
    const std::lock_guard lock(mutex_);
    return count_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable raised_;
  int count_ = 0;
  Clock::time_point at_;
};

class Listener final : public FolderWatchListener {
 public:
  void changed(std::vector<FolderChange> /*changes*/) override { change.raise(); }
  void lost(std::string reason) override { throw std::runtime_error(reason); }
  void stands(std::optional<std::string> reasonAgainst) override {
    if (reasonAgainst) {
      throw std::runtime_error(*reasonAgainst);
    }
    standing.raise();
  }
  void proved() override { proof.raise(); }

  Signal change;
  Signal standing;
  Signal proof;
};

/// A watch over one folder, walked or not.
class Watched {
 public:
  Watched(Machine& machine, const std::string& folder) : watch_(machine.makeFolderWatch(listener_)) {
    watch_->start({folder});
    listener_.standing.waitBeyond(0);
  }

  ListingObserver& listings() { return watch_->listings(); }
  Signal& change() { return listener_.change; }
  void settle() {
    const int count = listener_.proof.count();
    watch_->prove();
    listener_.proof.waitBeyond(count);
  }

 private:
  Listener listener_;
  std::unique_ptr<FolderWatch> watch_;
};

/// A thread that does nothing but read inotify's events of one folder.
class BareReader {
 public:
  explicit BareReader(const std::string& folder) : instance_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (inotify_add_watch(instance_.get(), folder.c_str(), IN_MODIFY) < 0) {
      throw std::runtime_error("no watch to be had");
    }
    thread_ = std::thread([this] { read(); });
  }
  ~BareReader() {
    isOver_ = true;
    thread_.join();
  }

  Signal& change() { return change_; }

 private:
  void read() {
    std::array<char, 65536> buffer;
    while (!isOver_) {
      pollfd source{instance_.get(), POLLIN, 0};
      if (poll(&source, 1, 100) > 0 && ::read(instance_.get(), buffer.data(), buffer.size()) > 0) {
        change_.raise();
      }
    }
  }

  FileDescriptor instance_;
  std::atomic<bool> isOver_ = false;
  Signal change_;
  std::thread thread_;
};

void walk(const Machine& machine, const std::string& folder, ListingObserver* observer) {
  const auto walk = machine.fileSystem->enumerate({folder, /*isDeep=*/true, observer});
  while (walk && walk->next() != nullptr) {
  }
}

double latencyOf(int file, Signal& change) {
  const int count = change.count();
  const auto start = Clock::now();
  if (pwrite(file, "x", 1, 0) != 1) {
    throw std::runtime_error("nothing can be written");
  }
  return std::chrono::duration<double>(change.waitBeyond(count) - start).count();
}

void measureLatency(Machine& machine, const std::string& folder, int repetitions) {
  const std::string path = folder + "/watch-bench";
  const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  std::vector<double> ours;
  std::vector<double> bare;
  {
    Watched watched(machine, folder);
    walk(machine, folder, &watched.listings());
    BareReader reader(folder);
    for (int repetition = 0; repetition < repetitions; ++repetition) {
      const int other = reader.change().count();
      ours.push_back(latencyOf(file.get(), watched.change()));
      reader.change().waitBeyond(other);
      const int own = watched.change().count();
      bare.push_back(latencyOf(file.get(), reader.change()));
      watched.change().waitBeyond(own);
      watched.settle();
    }
  }
  unlink(path.c_str());
  print("latency", "watch", ours);
  print("latency", "bare loop", bare);
}

void measureFirstScan(Machine& machine, const std::string& folder, int repetitions) {
  std::vector<double> watchedScans;
  std::vector<double> repeatedScans;
  std::vector<double> scans;
  std::vector<double> bytes;
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    // The system clears the former watches away meanwhile.
    walk(machine, folder, nullptr);
    auto start = Clock::now();
    walk(machine, folder, nullptr);
    scans.push_back(secondsSince(start));
    const std::size_t before = mallinfo2().uordblks;
    start = Clock::now();
    Watched watched(machine, folder);
    walk(machine, folder, &watched.listings());
    watchedScans.push_back(secondsSince(start));
    bytes.push_back(static_cast<double>(mallinfo2().uordblks) - static_cast<double>(before));
    start = Clock::now();
    walk(machine, folder, &watched.listings());
    repeatedScans.push_back(secondsSince(start));
  }
  print("scan", "first watched", watchedScans);
  print("scan", "watched again", repeatedScans);
  print("scan", "alone", scans);
  print("memory", "watch", bytes);
}

}  // namespace
}  // namespace cirrovane

int main(int argumentCount, char** arguments) {
  const std::string_view what = argumentCount == 4 ? arguments[1] : "";
  if (what != "latency" && what != "scan") {
    std::fputs("Usage: watch_bench latency|scan FOLDER REPETITIONS\n", stderr);
    return 2;
  }
  try {
    auto machine = cirrovane::makeMachine("/");
    if (!machine) {
      throw std::runtime_error(machine.message());
    }
    const auto measure = what == "latency" ? cirrovane::measureLatency : cirrovane::measureFirstScan;
    measure(*machine, arguments[2], std::atoi(arguments[3]));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "watch_bench: %s\n", error.what());
    return 1;
  }
}
