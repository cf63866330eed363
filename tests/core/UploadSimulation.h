#pragma once

#include "base/Time.h"
#include "core/UploadProgress.h"

#include <chrono>
#include <cstdint>
#include <random>
#include <vector>

namespace cirrovane::test {

/// How an invented upload goes.
enum class UploadKind { constant, bursty, stalling, growing, mixed };

/// What one look at an invented upload came to, and what became of it.
struct UploadLook {
  Time at;
  /// Since the upload began.
  std::chrono::microseconds age{};
  bool hasEstimate = false;
  Time earliest;
  Time latest;
  /// When nothing was pending any more.
  Time end;
  /// Since anything left last.
  std::chrono::microseconds quiet{};
  /// Whether nothing leaves for over a minute later on.
  bool isStallAhead = false;

  bool isRight() const { return earliest <= end && end <= latest; }
  bool isNarrow() const { return latest - earliest <= 3 * (end - at); }
};

/// One invented upload from beginning to end, looked at every few seconds. The seed alone decides everything.
std::vector<UploadLook> simulateUpload(UploadKind kind, std::uint32_t seed);

}  // namespace cirrovane::test
