#pragma once

#include "platform/Panels.h"

#include <QAccessible>
#include <QPointer>
#include <QWindow>
#include <functional>

class QFileDialog;

namespace cirrovane {

/// File panels: the desktop's own where it has some. While a screen reader runs they are Qt's, which it can read; a
/// Mac's own it reads too. Needs a QApplication.
class QtPanels final : public Panels {
 public:
  /// Whether a screen reader runs.
  using IsRead = std::function<bool()>;

  /// The first panel shows `firstFolder`, where it exists; each later one the folder around the last answer.
  explicit QtPanels(std::string firstFolder = {}, IsRead isRead = QAccessible::isActive)
      : folder_(std::move(firstFolder)), isRead_(std::move(isRead)) {}

  /// The window that the next panels belong to; nullptr for none.
  void setParentWindow(QWindow* window) { parentWindow_ = window; }

  std::optional<std::string> chooseFolder(const FolderPanel& panel) override;
  std::optional<std::string> chooseFileToSave(const SavePanel& panel) override;

  /// The file of the panel's kind for a name that any panel let pass: the user is asked again where the kind's ending
  /// makes another file of it that exists. Absent when the user would rather keep that.
  static std::optional<std::string> withEnding(const std::string& file, const SavePanel& panel);

 private:
  /// Whether a panel may be the desktop's own.
  bool mayBeNative() const;
  std::optional<std::string> ask(QFileDialog& dialog);

  QPointer<QWindow> parentWindow_;
  std::string folder_;
  IsRead isRead_;
};

}  // namespace cirrovane
