#include "platform/qt/QtPanels.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QUrl>
#include <utility>

namespace cirrovane {
namespace {

/// What the names of such files end with, in small letters.
QString endingOf(SaveKind kind) {
  return kind == SaveKind::json ? QStringLiteral(".json") : QStringLiteral(".html");
}

bool hasEnding(const QString& file, SaveKind kind) {
  return file.endsWith(endingOf(kind), Qt::CaseInsensitive);
}

/// A panel that names files of one kind only, as the Mac's does: whatever else a name ends with, its ending follows.
class KindFileDialog final : public QFileDialog {
 public:
  explicit KindFileDialog(SaveKind kind) : kind_(kind) {}

  void accept() override {
    const QStringList files = selectedFiles();
    // Not selectFile(), which leaves alone what the user is typing. A desktop's own panel has no such child.
    auto* name = findChild<QLineEdit*>("fileNameEdit");
    if (name != nullptr && files.size() == 1 && !hasEnding(files.front(), kind_) && !QFileInfo(files.front()).isDir()) {
      name->setText(name->text() + endingOf(kind_));
    }
    QFileDialog::accept();
  }

 private:
  SaveKind kind_;
};

}  // namespace

std::optional<std::string> QtPanels::chooseFolder(const FolderPanel& panel) {
  QFileDialog dialog;
  dialog.setWindowTitle(QString::fromStdString(panel.title));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  dialog.setOption(QFileDialog::DontUseNativeDialog, !mayBeNative());
  dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
  return ask(dialog);
}

std::optional<std::string> QtPanels::chooseFileToSave(const SavePanel& panel) {
  KindFileDialog dialog(panel.kind);
  dialog.setWindowTitle(QString::fromStdString(panel.title));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setOption(QFileDialog::DontUseNativeDialog, !mayBeNative());
  dialog.setNameFilter(panel.kind == SaveKind::json ? "JSON (*.json)" : "HTML (*.html)");
  dialog.setDefaultSuffix(endingOf(panel.kind).mid(1));
  dialog.selectFile(QString::fromStdString(panel.proposedName));
  const auto file = ask(dialog);
  return file ? withEnding(*file, panel) : std::nullopt;
}

std::optional<std::string> QtPanels::withEnding(const std::string& file, const SavePanel& panel) {
  const QString path = QString::fromStdString(file);
  if (hasEnding(path, panel.kind)) {
    return file;
  }
  // The desktop's own panel took the name as it was typed, and asked about that one.
  const QString wanted = path + endingOf(panel.kind);
  const auto answer =
      QFileInfo::exists(wanted)
          ? QMessageBox::question(nullptr, QString::fromStdString(panel.title),
                                  QFileInfo(wanted).fileName() + " already exists.\nDo you want to replace it?")
          : QMessageBox::Yes;
  return answer == QMessageBox::Yes ? std::optional(wanted.toStdString()) : std::nullopt;
}

bool QtPanels::mayBeNative() const {
  // Elsewhere than on a Mac a screen reader cannot be sure to read that one.
  return QGuiApplication::platformName() == "cocoa" || !isRead_();
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
