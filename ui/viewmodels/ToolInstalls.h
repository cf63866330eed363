#pragma once

#include "base/Published.h"
#include "diagnostics/ToolInstaller.h"
#include "platform/Executor.h"
#include "ui/viewmodels/Background.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {

/// What is known of an optional tool.
struct ToolState {
  /// Absent before the first look at it.
  std::optional<bool> isInstalled;
  bool isInstalling = false;
  /// How its latest install ended; absent before the first, and during one.
  std::optional<bool> hasSucceeded;
  /// Installs that began or ended so far.
  std::uint64_t turns = 0;

  friend bool operator==(const ToolState&, const ToolState&) = default;
};

/// By the tools' commands, which live for ever.
using ToolStates = std::map<std::string_view, ToolState>;

/// The optional tools' installs, which go on whether or not anybody looks. Main thread only.
class ToolInstalls {
 public:
  /// `mainExecutor` takes results of the background over, and outlives all of it.
  ToolInstalls(const ToolInstaller& installer, Executor& mainExecutor);
  ToolInstalls(const ToolInstaller& installer, Executor& mainExecutor, Background background)
      : installer_(installer), mainExecutor_(mainExecutor), background_(std::move(background)) {}

  const Published<ToolStates>& publishedStates() const { return states_; }
  ToolState state(std::string_view command) const;

  /// Where Homebrew is at this moment; absent when it is not installed.
  std::optional<std::string> brewPath() const { return installer_.brewPath(); }

  /// Looks which tools are installed; nothing happens while it does.
  void look();
  bool isLooking() const { return isLooking_; }

  /// Installs the tool of this command, if there is one, with Homebrew; does nothing while it does, and without
  /// Homebrew.
  void install(std::string_view command);

 private:
  void finishInstall(std::string_view command, bool hasSucceeded, bool isInstalled);
  void change(std::string_view command, const std::function<void(ToolState&)>& by);
  /// Runs `work` in the background. `finish` gets its result on the main thread, unless this is gone.
  template <class Work, class Finish>
  void inBackground(Work work, Finish finish);

  ToolInstaller installer_;
  Executor& mainExecutor_;
  Background background_;
  Published<ToolStates> states_;
  bool isLooking_ = false;

  /// Goes with this, so that work under way can tell.
  std::shared_ptr<const int> alive_ = std::make_shared<const int>();
};

}  // namespace cirrovane
