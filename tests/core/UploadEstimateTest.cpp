#include "tests/core/UploadSimulation.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <utility>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;

/// How many invented uploads of each kind; the suite for long runs asks for more.
int runCount() {
  const char* asked = std::getenv("CIRROVANE_UPLOAD_RUNS");
  return asked != nullptr ? std::atoi(asked) : 8;
}

struct Shares {
  int looks = 0;
  int standing = 0;
  int judged = 0;
  int right = 0;
  int wide = 0;
  int outlived = 0;

  Shares& operator+=(const Shares& more) {
    looks += more.looks;
    standing += more.standing;
    judged += more.judged;
    right += more.right;
    wide += more.wide;
    outlived += more.outlived;
    return *this;
  }
};

Shares sharesOf(UploadKind kind) {
  Shares shares;
  for (int run = 0; run < runCount(); ++run) {
    for (const UploadLook& look : simulateUpload(kind, static_cast<std::uint32_t>(run + 1))) {
      if (look.age >= 60s) {
        ++shares.looks;
        shares.standing += look.hasEstimate ? 1 : 0;
      }
      if (look.hasEstimate && !look.isStallAhead) {
        ++shares.judged;
        shares.right += look.isRight() ? 1 : 0;
        shares.wide += look.isNarrow() ? 0 : 1;
      }
      // A look's own second, and the time to the look that saw the last file leave.
      shares.outlived += look.hasEstimate && look.quiet > 60s + 16s ? 1 : 0;
    }
  }
  return shares;
}

void tell(const char* name, const Shares& shares) {
  const auto percent = [](int part, int whole) { return 100 * part / std::max(whole, 1); };
  std::cout << fmt::format(
      "[  looks   ] {}: {}, an estimate in {} %; of {} with no stall ahead {} % right, {} % too wide\n", name,
      shares.looks, percent(shares.standing, shares.looks), shares.judged, percent(shares.right, shares.judged),
      percent(shares.wide, shares.judged));
}

TEST(UploadEstimates, ofInventedUploads_holdTheTrueEndAndStandWhereTheyCan) {
  const std::array<std::pair<UploadKind, const char*>, 5> kinds = {{{UploadKind::constant, "constant"},
                                                                    {UploadKind::bursty, "bursty"},
                                                                    {UploadKind::stalling, "stalling"},
                                                                    {UploadKind::growing, "growing"},
                                                                    {UploadKind::mixed, "mixed"}}};
  Shares all;
  for (const auto& [kind, name] : kinds) {
    const Shares shares = sharesOf(kind);
    tell(name, shares);
    all += shares;
    EXPECT_EQ(shares.outlived, 0) << name;
    if (kind == UploadKind::constant || kind == UploadKind::bursty) {
      EXPECT_GE(shares.standing * 100, shares.looks * 70) << name;
    }
  }
  ASSERT_GT(all.judged, 1000);
  EXPECT_GE(all.right * 100, all.judged * 90);
  EXPECT_LE(all.wide * 100, all.judged * 10);
}

}  // namespace
}  // namespace cirrovane::test
