#include "platform/qt/QtWorkspace.h"

#include <QByteArray>
#include <QDesktopServices>
#include <QUrl>
#include <utility>

namespace cirrovane {
namespace {

void openFolderOf(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/') + 1);
  QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(fileURI(folder))));
}

}  // namespace

std::string fileURI(const std::string& path) {
  // Encoded byte by byte, because a path that is not UTF-8 would not survive as a QString.
  return "file://" + QByteArray::fromStdString(path).toPercentEncoding("/").toStdString();
}

QtWorkspace::QtWorkspace(ItemRevealer revealer) : revealer_(std::move(revealer)) {}

void QtWorkspace::reveal(const std::string& path) {
  if (revealer_) {
    revealer_(path, [path] { openFolderOf(path); });
  } else {
    openFolderOf(path);
  }
}

void QtWorkspace::openURL(const std::string& url) {
  QDesktopServices::openUrl(QUrl(QString::fromStdString(url)));
}

}  // namespace cirrovane
