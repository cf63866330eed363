#pragma once

#include "platform/Panels.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Panels in which the user gives the answer that the test has set, at once.
class FakePanels final : public Panels {
 public:
  /// The path that the user picks; absent for one who cancels.
  std::optional<std::string> answer;
  /// What happens while a panel is open.
  std::function<void()> whileOpen = [] {};

  std::optional<std::string> chooseFolder(const FolderPanel& panel) override {
    folderPanels_.push_back(panel);
    whileOpen();
    return answer;
  }
  std::optional<std::string> chooseFileToSave(const SavePanel& panel) override {
    savePanels_.push_back(panel);
    whileOpen();
    return answer;
  }

  // The panels that were shown, in order.
  const std::vector<FolderPanel>& folderPanels() const { return folderPanels_; }
  const std::vector<SavePanel>& savePanels() const { return savePanels_; }

 private:
  std::vector<FolderPanel> folderPanels_;
  std::vector<SavePanel> savePanels_;
};

}  // namespace cirrovane::test
