#pragma once

#include "base/FileDescriptor.h"
#include "tests/cli/Program.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

namespace cirrovane::test {

/// One line of a program, and when it was read.
struct HeardLine {
  std::chrono::steady_clock::time_point at;
  std::string text;
};

/// Both ends of a pipe.
struct Pipe {
  Pipe();
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

/// A program that prints a line at each change, read while it runs. A line that does not come fails the test.
class Watching {
 public:
  /// Starts `cirrovanectl` with these arguments.
  explicit Watching(const std::vector<std::string>& arguments,
                    const std::map<std::string, std::string>& environment = {});
  /// Starts another program, by its path, which ends up as that one.
  Watching(const std::string& program, const std::vector<std::string>& arguments,
           const std::map<std::string, std::string>& environment = {});
  ~Watching();
  Watching(const Watching&) = delete;
  Watching& operator=(const Watching&) = delete;

  /// The next line that was not asked for yet; empty where none comes.
  std::string nextText();
  /// The same as the JSON object that it is; null where none comes.
  nlohmann::json next();
  /// The next line for which it holds; those before it are passed over.
  nlohmann::json nextWith(const std::function<bool(const nlohmann::json&)>& holds);
  /// Everything that was read so far.
  std::vector<HeardLine> heard() const;

  void signal(int number) const { program_->signal(number); }
  /// Waits for the end of the program and of what it says.
  std::optional<int> exitStatus();
  /// What it wrote to standard error so far.
  std::string errors() const { return readFile(folder_ / "errors"); }

 private:
  void hear();

  const TemporaryFolder folder_{CIRROVANE_TEST_DIR};
  Pipe pipe_;
  std::optional<RunningProgram> program_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<HeardLine> heard_;
  bool isOver_ = false;
  std::size_t asked_ = 0;
  std::thread thread_;
};

/// A line without its times, its liveness and the reason: what a verdict's values are.
nlohmann::json verdictOf(const nlohmann::json& line);
/// The same of a report, as `check --json` prints it.
nlohmann::json verdictOfReport(const nlohmann::json& report);

}  // namespace cirrovane::test
