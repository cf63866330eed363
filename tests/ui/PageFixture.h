#pragma once

#include "tests/coordinator/DashboardFixture.h"
#include "tests/support/FakeAmountText.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/NotedClipboard.h"
#include "ui/viewmodels/PageContext.h"
#include "ui/viewmodels/ToolsEnvironment.h"

#include <QCoreApplication>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace cirrovane::test {

/// A dashboard with what the pages' view models are made over, and the event loop in which they catch up.
class PageTest : public DashboardMachine {
 protected:
  PageTest() : DashboardMachine({executor_, executor_, executor_, executor_}) { launch(); }

  using DashboardMachine::launch;
  /// The pages' context goes with the dashboard that it is about.
  void launch() {
    context_.reset();
    DashboardMachine::launch();
  }

  /// Makes the page's view model over the dashboard as it is now.
  template <class ViewModel>
  std::unique_ptr<ViewModel> open() {
    return openWith(std::make_unique<ViewModel>());
  }
  template <class ViewModel>
  std::unique_ptr<ViewModel> openWith(std::unique_ptr<ViewModel> page) {
    if (!context_) {
      settings_ = std::make_unique<AppSettings>(defaults_, AppSettings::System{.notifications = &permission_});
      context_ = std::make_unique<PageContext>(
          PageContext::Parts{*dashboard_, *coverage_, timeText_, amountText_, *settings_, tools_, nullptr});
    }
    page->setContext(context_.get());
    return page;
  }

  /// Lets the pages take over what was published.
  static void catchUp() { QCoreApplication::processEvents(); }

  ManualExecutor executor_;
  int argumentCount_ = 1;
  char name_[6] = "tests";
  char* arguments_[1] = {name_};
  QCoreApplication application_{argumentCount_, arguments_};
  FakeAmountText amountText_;
  NotedClipboard clipboard_;
  /// Tasks that would run at the same time, each on a thread of its own.
  std::vector<std::function<void()>> background_;
  ToolInstalls installs_{
      {commands_, system_}, executor_, [this](std::function<void()> task) { background_.push_back(std::move(task)); }};
  ToolsEnvironment tools_{installs_, clipboard_, workspace_, executor_};
  NotificationPermission permission_{center_, bundle_, workspace_};
  std::unique_ptr<AppSettings> settings_;
  std::unique_ptr<PageContext> context_;
};

}  // namespace cirrovane::test
