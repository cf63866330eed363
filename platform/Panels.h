#pragma once

#include <optional>
#include <string>

namespace cirrovane {

/// What a panel says in which the user picks one existing folder.
struct FolderPanel {
  std::string title;
  /// The label of the button that confirms.
  std::string prompt;
};

/// A kind of files, by what people call it and what their names end with.
struct FileKind {
  std::string title;
  /// Without the dot.
  std::string suffix;

  friend bool operator==(const FileKind&, const FileKind&) = default;
};

inline FileKind jsonFiles() {
  return {.title = "JSON", .suffix = "json"};
}
inline FileKind webPages() {
  return {.title = "HTML", .suffix = "html"};
}

/// What a panel says in which the user names a file to be written.
struct SavePanel {
  std::string title;
  std::string proposedName;
  FileKind kind = jsonFiles();
};

/// The system's file panels. Main thread only; each call returns when the user has answered, and events are handled
/// meanwhile.
class Panels {
 public:
  virtual ~Panels() = default;
  /// Absolute path of the folder; absent when the user cancels, or the panel yields none.
  virtual std::optional<std::string> chooseFolder(const FolderPanel& panel) = 0;
  /// Absolute path of the file, of the panel's kind, which the user agrees to overwrite if it exists; absent as above.
  virtual std::optional<std::string> chooseFileToSave(const SavePanel& panel) = 0;
};

}  // namespace cirrovane
