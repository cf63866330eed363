#pragma once

#include "platform/FileStorage.h"
#include "platform/LoginItem.h"
#include "platform/linux/macroot/MacRoot.h"

#include <optional>
#include <string>
#include <utility>

namespace cirrovane {

/// What a Mac root's system opens at login: a file in the home folder, and the described user's approval. As on a Mac,
/// a bare executable is not taken.
class RootLoginItem final : public LoginItem {
 public:
  /// The storage outlives this.
  RootLoginItem(MacRoot root, const FileStorage& storage) : root_(std::move(root)), storage_(storage) {}

  Result<LoginItemState> state() const override;
  std::optional<Failure> setOn(bool isOn) override;
  bool hasSystemSettings() const override { return false; }
  void openSystemSettings() override {}

 private:
  std::string path() const;

  MacRoot root_;
  const FileStorage& storage_;
};

}  // namespace cirrovane
