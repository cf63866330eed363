#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace cirrovane {

/// What a panel says in which the user picks one existing folder.
struct FolderPanel {
  std::string title;
  /// The label of the button that confirms.
  std::string prompt;
};

/// What a file to be written holds.
enum class SaveKind : std::uint8_t { json, html };

/// What a panel says in which the user names such a file to be written.
struct SavePanel {
  std::string title;
  std::string proposedName;
  SaveKind kind = SaveKind::json;
};

/// The system's file panels. Main thread only; each call returns when the user has answered, and events are handled
/// meanwhile.
class Panels {
 public:
  virtual ~Panels() = default;
  /// Absolute path of the folder; absent when the user cancels, or the panel yields none.
  virtual std::optional<std::string> chooseFolder(const FolderPanel& panel) = 0;
  /// Absolute path of the file, which the user agrees to overwrite if it exists; absent as above.
  virtual std::optional<std::string> chooseFileToSave(const SavePanel& panel) = 0;
};

}  // namespace cirrovane
