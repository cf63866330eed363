#include "tests/cli/Watching.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

/// Beyond it a line counts as one that never comes.
constexpr std::chrono::seconds kPatience{60};

}  // namespace

Pipe::Pipe() {
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  readEnd = FileDescriptor(ends[0]);
  writeEnd = FileDescriptor(ends[1]);
}

Watching::Watching(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& environment)
    : Watching(kProgram, arguments, environment) {}

Watching::Watching(const std::string& program, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& environment) {
  const FileDescriptor errors(open((folder_ / "errors").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  program_.emplace(program, arguments, pipe_.writeEnd.get(), errors.get(), environment);
  pipe_.writeEnd = FileDescriptor();
  thread_ = std::thread([this] { hear(); });
}

Watching::~Watching() {
  program_.reset();
  thread_.join();
}

std::string Watching::nextText() {
  std::unique_lock lock(mutex_);
  const bool isThere = changed_.wait_for(lock, kPatience, [this] { return isOver_ || heard_.size() > asked_; });
  if (!isThere || heard_.size() <= asked_) {
    ADD_FAILURE() << (isThere ? "the program ended" : "no line came") << " after " << heard_.size()
                  << " lines, the last: " << (heard_.empty() ? "" : heard_.back().text);
    return "";
  }
  return heard_[asked_++].text;
}

nlohmann::json Watching::next() {
  const std::string text = nextText();
  return text.empty() ? nlohmann::json() : parsed(text);
}

nlohmann::json Watching::nextWith(const std::function<bool(const nlohmann::json&)>& holds) {
  while (true) {
    nlohmann::json line = next();
    if (line.is_null() || holds(line)) {
      return line;
    }
  }
}

std::vector<HeardLine> Watching::heard() const {
  const std::lock_guard lock(mutex_);
  return heard_;
}

std::optional<int> Watching::exitStatus() {
  const std::optional<int> status = program_->exitStatus();
  std::unique_lock lock(mutex_);
  EXPECT_TRUE(changed_.wait_for(lock, kPatience, [this] { return isOver_; })) << "its output stays open";
  return status;
}

void Watching::hear() {
  std::string rest;
  std::array<char, 65536> buffer{};
  while (true) {
    const ssize_t length = read(pipe_.readEnd.get(), buffer.data(), buffer.size());
    if (length < 0 && errno == EINTR) {
      continue;
    }
    const auto now = std::chrono::steady_clock::now();
    const std::lock_guard lock(mutex_);
    if (length <= 0) {
      isOver_ = true;
      EXPECT_EQ(rest, "") << "a line without an end";
      changed_.notify_all();
      return;
    }
    rest.append(buffer.data(), static_cast<std::size_t>(length));
    for (std::size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n')) {
      heard_.push_back({now, rest.substr(0, end)});
      rest.erase(0, end + 1);
    }
    changed_.notify_all();
  }
}

nlohmann::json verdictOf(const nlohmann::json& line) {
  nlohmann::json values = line;
  for (const char* other : {"at", "confirmedAt", "liveness", "reason"}) {
    values.erase(other);
  }
  return values;
}

nlohmann::json verdictOfReport(const nlohmann::json& report) {
  const nlohmann::json& blockers = report["blockers"];
  nlohmann::json values = {{"blockerCount", blockers.size()},
                           {"localAvailabilityScore", report["localAvailabilityScore"]},
                           {"pendingUploads", report["metrics"]["pendingUploads"]},
                           {"safeToClose", report["safeToClose"]},
                           {"score", report["score"]},
                           {"status", report["status"]},
                           {"totalFiles", report["metrics"]["totalFiles"]}};
  if (!blockers.empty()) {
    values["topBlocker"] = blockers.front()["filePath"];
  }
  return values;
}

}  // namespace cirrovane::test
