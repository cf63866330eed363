#include "tests/core/UploadSimulation.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

using namespace std::chrono_literals;

/// How many invented uploads of each kind; the suite for long runs asks for more.
int runCount() {
  const char* asked = std::getenv("CIRROVANE_UPLOAD_RUNS");
  return asked != nullptr ? std::atoi(asked) : 20;
}

struct Shares {
  int looks = 0;
  int standing = 0;
  int judged = 0;
  int right = 0;
  int wide = 0;
  int outlived = 0;
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

struct NamedKind {
  const char* name;
  UploadKind kind;
};

class UploadEstimates : public testing::TestWithParam<NamedKind> {};

TEST_P(UploadEstimates, ofInventedUploads_holdTheTrueEnd) {
  const Shares shares = sharesOf(GetParam().kind);
  RecordProperty("looks", shares.looks);
  std::printf("[  looks   ] %d, an estimate in %d %%; of %d with no stall ahead %d %% right, %d %% too wide\n",
              shares.looks, 100 * shares.standing / std::max(shares.looks, 1), shares.judged,
              100 * shares.right / std::max(shares.judged, 1), 100 * shares.wide / std::max(shares.judged, 1));
  ASSERT_GT(shares.judged, 100);
  EXPECT_GE(shares.right * 100, shares.judged * 90);
  EXPECT_LE(shares.wide * 100, shares.judged * 10);
  EXPECT_EQ(shares.outlived, 0);
  if (GetParam().kind == UploadKind::constant || GetParam().kind == UploadKind::bursty) {
    EXPECT_GE(shares.standing * 100, shares.looks * 70);
  }
}

INSTANTIATE_TEST_SUITE_P(All, UploadEstimates,
                         testing::Values(NamedKind{"constant", UploadKind::constant},
                                         NamedKind{"bursty", UploadKind::bursty},
                                         NamedKind{"stalling", UploadKind::stalling},
                                         NamedKind{"growing", UploadKind::growing},
                                         NamedKind{"mixed", UploadKind::mixed}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace cirrovane::test
