#include "tests/core/UploadSimulation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <deque>
#include <optional>
#include <set>
#include <string>

#include <fmt/format.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;

constexpr Time kBegin{std::chrono::seconds(1'790'000'000)};
/// Time goes by in steps.
constexpr double kStep = 0.25;
constexpr double kLongestRun = 6 * 3600;

struct WaitingFile {
  std::string path;
  std::int64_t size = 0;
  double done = 0;
};

/// The line and the files, step by step.
class Upload {
 public:
  Upload(UploadKind kind, std::uint32_t seed) : kind_(kind), random_(seed) {
    rate_ = std::exp(between(std::log(2e5), std::log(2e7)));
    const int count = static_cast<int>(std::exp(between(std::log(20), std::log(400))));
    const double usual = std::exp(between(std::log(1e5), std::log(2e7)));
    // Long enough that there is anything to say.
    const double least = rate_ * between(180, 1800);
    for (int number = 0; number < count || bytesWaiting() < least; ++number) {
      addFile(usual);
      if (number > 3000) {
        break;
      }
    }
    usual_ = usual;
    lanes_ = static_cast<std::size_t>(std::uniform_int_distribution<int>(1, 4)(random_));
    period_ = between(5, 50);
    share_ = between(0.2, 0.7);
    growsUntil_ = between(60, 600);
  }

  double looksEvery() { return between(1, 15); }
  bool isOver() const { return waiting_.empty(); }
  const std::deque<WaitingFile>& waiting() const { return waiting_; }
  const std::set<std::string>& uploaded() const { return uploaded_; }

  /// Whether a file left.
  bool step(double now) {
    if (kind_ == UploadKind::growing && now < growsUntil_ && between(0, 1) < kStep * 0.2) {
      addFile(usual_);
    }
    double budget = rateAt(now) * kStep;
    bool hasLeft = false;
    while (budget > 0 && !waiting_.empty()) {
      const std::size_t lanes = std::min(lanes_, waiting_.size());
      const double portion = budget / static_cast<double>(lanes);
      budget = 0;
      for (std::size_t lane = 0; lane < lanes; ++lane) {
        WaitingFile& file = waiting_[lane];
        const double used = std::min(portion, static_cast<double>(file.size) - file.done);
        file.done += used;
        budget += portion - used;
      }
      for (std::size_t lane = std::min(lanes, waiting_.size()); lane-- > 0;) {
        if (waiting_[lane].done >= static_cast<double>(waiting_[lane].size)) {
          uploaded_.insert(waiting_[lane].path);
          waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(lane));
          hasLeft = true;
        }
      }
    }
    return hasLeft;
  }

 private:
  double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }

  double bytesWaiting() const {
    double bytes = 0;
    for (const WaitingFile& file : waiting_) {
      bytes += static_cast<double>(file.size);
    }
    return bytes;
  }

  void addFile(double usual) {
    const double spread = kind_ == UploadKind::mixed ? 2.0 : 0.4;
    const double size = usual * std::exp(std::normal_distribution<double>(0, spread)(random_));
    waiting_.push_back({fmt::format("/drive/{:05}", ++fileCount_), static_cast<std::int64_t>(size) + 1});
  }

  double rateAt(double now) {
    if (kind_ == UploadKind::bursty) {
      return std::fmod(now, period_) < period_ * share_ ? rate_ / share_ : 0;
    }
    if (kind_ == UploadKind::stalling) {
      if (now >= nextChange_) {
        isStalled_ = !isStalled_ && nextChange_ > 0;
        nextChange_ = now + (isStalled_ ? between(30, 400) : between(60, 900));
      }
      return isStalled_ ? 0 : rate_;
    }
    return rate_ * between(0.7, 1.3);
  }

  UploadKind kind_;
  std::mt19937 random_;
  double rate_ = 0;
  double usual_ = 0;
  std::size_t lanes_ = 1;
  double period_ = 0;
  double share_ = 0;
  double growsUntil_ = 0;
  double nextChange_ = 0;
  bool isStalled_ = false;
  int fileCount_ = 0;
  std::deque<WaitingFile> waiting_;
  std::set<std::string> uploaded_;
};

Time timeAt(double seconds) {
  return kBegin + std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::duration<double>(seconds));
}

UploadLook look(const Upload& upload, UploadRecord& record, double now) {
  std::vector<PendingFile> pending;
  for (const WaitingFile& file : upload.waiting()) {
    pending.push_back({file.path, "Work", file.size});
  }
  record = afterLook(std::move(record), pending, timeAt(now), [&](const std::vector<std::string>& paths) {
    std::vector<bool> answers;
    for (const std::string& path : paths) {
      answers.push_back(upload.uploaded().contains(path));
    }
    return answers;
  });
  const PendingUploads totals = pendingTotals(record, pending, timeAt(now));
  UploadLook seen;
  seen.at = timeAt(now);
  seen.age = seen.at - kBegin;
  seen.hasEstimate = totals.estimate.has_value();
  if (totals.estimate) {
    seen.earliest = totals.estimate->earliest;
    seen.latest = totals.estimate->latest;
  }
  return seen;
}

}  // namespace

std::vector<UploadLook> simulateUpload(UploadKind kind, std::uint32_t seed) {
  Upload upload(kind, seed);
  const double interval = upload.looksEvery();
  UploadRecord record;
  std::vector<UploadLook> looks;
  std::vector<double> pauses;
  std::vector<double> departures = {0};
  double nextLook = 0;
  double now = 0;
  for (; now < kLongestRun && !upload.isOver(); now += kStep) {
    if (now >= nextLook) {
      looks.push_back(look(upload, record, now));
      looks.back().quiet = looks.back().at - timeAt(departures.back());
      nextLook += interval;
    }
    if (upload.step(now)) {
      departures.push_back(now + kStep);
    }
  }
  departures.push_back(now);
  for (UploadLook& seen : looks) {
    seen.end = timeAt(now);
    for (std::size_t index = 1; index < departures.size(); ++index) {
      const Time from = std::max(timeAt(departures[index - 1]), seen.at);
      seen.isStallAhead = seen.isStallAhead || timeAt(departures[index]) - from > 60s;
    }
  }
  return looks;
}

}  // namespace cirrovane::test
