#pragma once

#include "platform/Updater.h"

#include <functional>
#include <utility>

namespace cirrovane::test {

/// An updater that only calls the test when it is to look for an update.
class FakeUpdater final : public Updater {
 public:
  explicit FakeUpdater(std::function<void()> onCheck) : onCheck_(std::move(onCheck)) {}

  void checkForUpdates() override { onCheck_(); }

 private:
  std::function<void()> onCheck_;
};

}  // namespace cirrovane::test
