#include "platform/qt/QtPanels.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QUrl>
#include <utility>

namespace cirrovane {
namespace {

#ifdef Q_OS_MACOS
constexpr bool kHasNativePanel = true;
#else
constexpr bool kHasNativePanel = false;
#endif

/// A panel that names JSON files only, as the Mac's does: whatever else a name ends with, ".json" follows.
class JSONFileDialog final : public QFileDialog {
 public:
  void accept() override {
    const QStringList files = selectedFiles();
    if (!kHasNativePanel && files.size() == 1 && !files.front().endsWith(".json", Qt::CaseInsensitive) &&
        !QFileInfo(files.front()).isDir()) {
      // Not selectFile(), which leaves alone what the user is typing.
      auto* name = findChild<QLineEdit*>("fileNameEdit");
      name->setText(name->text() + ".json");
    }
    QFileDialog::accept();
  }
};

}  // namespace

std::optional<std::string> QtPanels::chooseFolder(const FolderPanel& panel) {
  QFileDialog dialog;
  dialog.setWindowTitle(QString::fromStdString(panel.title));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setOption(QFileDialog::DontUseNativeDialog, !kHasNativePanel);
  dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
  return ask(dialog);
}

std::optional<std::string> QtPanels::chooseFileToSave(const SavePanel& panel) {
  JSONFileDialog dialog;
  dialog.setWindowTitle(QString::fromStdString(panel.title));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontUseNativeDialog, !kHasNativePanel);
  dialog.setNameFilter("JSON (*.json)");
  dialog.setDefaultSuffix("json");
  dialog.selectFile(QString::fromStdString(panel.proposedName));
  return ask(dialog);
}

std::optional<std::string> QtPanels::ask(QFileDialog& dialog) {
  dialog.setSupportedSchemes({"file"});
  if (const QString folder = QString::fromStdString(folder_); !folder.isEmpty() && QDir(folder).exists()) {
    dialog.setDirectory(folder);
  }
  if (parentWindow_ != nullptr) {
    // The dialog has a window of its own only once its identifier was asked for.
    static_cast<void>(dialog.winId());
    dialog.windowHandle()->setTransientParent(parentWindow_);
  }
  if (dialog.exec() != QDialog::Accepted) {
    return std::nullopt;
  }
  const QList<QUrl> chosen = dialog.selectedUrls();
  if (chosen.size() != 1 || !chosen.front().isLocalFile()) {
    return std::nullopt;
  }
  const QString path = chosen.front().toLocalFile();
  folder_ = QFileInfo(path).absolutePath().toStdString();
  return path.toStdString();
}

}  // namespace cirrovane
