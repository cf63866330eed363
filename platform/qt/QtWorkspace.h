#pragma once

#include "platform/Workspace.h"

#include <functional>

namespace cirrovane {

/// Shows one item in the file manager, selected. `path` is absolute; `orElse` is called on the main thread, at once or
/// later, when that cannot be done.
using ItemRevealer = std::function<void(const std::string& path, std::function<void()> orElse)>;

/// The URI of a file, whatever bytes its absolute path has.
std::string fileURI(const std::string& path);

/// The desktop's other programs. Nothing here waits for them.
class QtWorkspace final : public Workspace {
 public:
  /// How items are revealed differs from system to system; without a revealer, or when it fails, the item's folder is
  /// opened.
  explicit QtWorkspace(ItemRevealer revealer = nullptr);

  void reveal(const std::string& path) override;
  void openURL(const std::string& url) override;

 private:
  ItemRevealer revealer_;
};

}  // namespace cirrovane
