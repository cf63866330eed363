#pragma once

#include "base/JSONReader.h"
#include "tests/coordinator/DashboardFixture.h"
#include "tests/support/ManualExecutor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace cirrovane::test {

struct ManualExecutors {
  ManualExecutor main_;
  ManualExecutor scan_;
  ManualExecutor diagnostics_;
  ManualExecutor status_;
};

/// A dashboard whose every task the test runs by hand.
class Dashboard : protected ManualExecutors, public DashboardMachine {
 protected:
  Dashboard() : DashboardMachine({main_, scan_, diagnostics_, status_}) { launch(); }

  /// Runs one task of whichever executor has one; false when none has.
  bool runOne() { return scan_.runOne() || diagnostics_.runOne() || status_.runOne() || main_.runOne(); }
  void runAll() {
    while (runOne()) {
    }
  }
  /// Runs a refresh until its report is published.
  void runScan() {
    scan_.runAll();
    main_.runOne();
  }
  /// Runs a refresh up to the moment before its other results are published.
  void runToPublication() {
    runScan();
    scan_.runAll();
    diagnostics_.runAll();
    main_.runOne();
    status_.runAll();
  }
  /// A whole refresh, the notification included.
  void cycle() {
    dashboard_->refresh();
    runAll();
    center_.answerAll();
  }

  std::size_t scans() const { return files_.enumerated().size(); }
  std::optional<bool> lastKnown() const { return defaults_.boolean(kLastKnownSafeToCloseKey); }
  void setLastKnown(DefaultsValue value) { defaults_.hold(std::string(kLastKnownSafeToCloseKey), std::move(value)); }

  bool isWritten(const std::string& path) const { return storage_.files().contains(path); }
  /// The packet that the dashboard wrote to the path.
  ProofPacket packetAt(const std::string& path) const {
    const auto packet = isWritten(path) ? decodeJSON<ProofPacket>(storage_.files().at(path)) : std::nullopt;
    EXPECT_TRUE(packet) << path;
    return packet.value_or(ProofPacket());
  }
};

}  // namespace cirrovane::test
