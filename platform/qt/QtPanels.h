#pragma once

#include "platform/Panels.h"

#include <QPointer>
#include <QWindow>

class QFileDialog;

namespace cirrovane {

/// File panels: the system's own on a Mac, elsewhere Qt's, which a screen reader can read. Needs a QApplication.
class QtPanels final : public Panels {
 public:
  /// The first panel shows `firstFolder`, where it exists; each later one the folder around the last answer.
  explicit QtPanels(std::string firstFolder = {}) : folder_(std::move(firstFolder)) {}

  /// The window that the next panels belong to; nullptr for none.
  void setParentWindow(QWindow* window) { parentWindow_ = window; }

  std::optional<std::string> chooseFolder(const FolderPanel& panel) override;
  std::optional<std::string> chooseFileToSave(const SavePanel& panel) override;

 private:
  std::optional<std::string> ask(QFileDialog& dialog);

  QPointer<QWindow> parentWindow_;
  std::string folder_;
};

}  // namespace cirrovane
