#pragma once

#include "platform/FileStorage.h"
#include "platform/LoginItem.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace cirrovane {

/// An entry in the user's autostart folder. One that is taken back stays there and says so, which also holds against an
/// entry that the whole machine has.
class AutostartLoginItem final : public LoginItem {
 public:
  /// The folder of the user's settings and the path of this program are asked for at each use; the storage outlives
  /// this.
  AutostartLoginItem(std::function<std::string()> settingsFolder, std::function<std::string()> program,
                     const FileStorage& storage)
      : settingsFolder_(std::move(settingsFolder)), program_(std::move(program)), storage_(storage) {}

  Result<LoginItemState> state() const override;
  std::optional<Failure> setOn(bool isOn) override;
  bool hasSystemSettings() const override { return false; }
  void openSystemSettings() override {}

 private:
  std::string path() const;

  std::function<std::string()> settingsFolder_;
  std::function<std::string()> program_;
  const FileStorage& storage_;
};

/// The path of the running program, also after an update has put another one in its place.
std::string runningProgram();

}  // namespace cirrovane
