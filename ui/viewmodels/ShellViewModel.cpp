#include "ui/viewmodels/ShellViewModel.h"

#include "coordinator/WebPages.h"
#include "ui/viewmodels/Text.h"

#include <QKeySequence>
#include <QMetaType>
#include <QVariantMap>
#include <chrono>
#include <string>

namespace cirrovane {
namespace {

constexpr std::chrono::seconds kCopiedNoteLifetime{2};

QVariantList listOf(std::span<const AppTab> tabs) {
  QVariantList list;
  for (const AppTab& tab : tabs) {
    list.append(QVariantMap{{QStringLiteral("id"), toQString(tab.id)},
                            {QStringLiteral("title"), toQString(tab.title)},
                            {QStringLiteral("symbol"), toQString(tab.sfSymbol)}});
  }
  return list;
}

}  // namespace

ShellViewModel::ShellViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, Clipboard& clipboard,
                               Workspace& workspace, const AppTab& firstTab, QObject* parent)
    : SurfaceViewModel(dashboard, updates, parent),
      clipboard_(clipboard),
      workspace_(workspace),
      selectedTab_(toQString(firstTab.id)) {
  copiedTimer_.setSingleShot(true);
  copiedTimer_.setInterval(kCopiedNoteLifetime);
  connect(&copiedTimer_, &QTimer::timeout, this, &ShellViewModel::buildLabelChanged);
  follow(updates.publishedUpdateStatusLine(), [this] { emit updateStatusLineChanged(); });
}

QVariantList ShellViewModel::primaryTabs() const {
  return listOf(cirrovane::primaryTabs());
}

QVariantList ShellViewModel::extraTabs() const {
  return listOf(cirrovane::extraTabs());
}

QString ShellViewModel::extraTabsLabel() const {
  const std::string selected = selectedTab_.toStdString();
  for (const AppTab& tab : cirrovane::extraTabs()) {
    if (tab.id == selected) {
      return toQString(tab.title);
    }
  }
  return QStringLiteral("More");
}

QString ShellViewModel::updateStatusLine() const {
  return toQString(updates().updateStatusLine());
}

QString ShellViewModel::buildLabel() const {
  return copiedTimer_.isActive() ? QStringLiteral("Copied ") + toQString(updates().versionLabel())
                                 : SurfaceViewModel::buildLabel();
}

void ShellViewModel::select(const QString& id) {
  const QString known = toQString(initialTab(id.toStdString()).id);
  if (known != selectedTab_) {
    selectedTab_ = known;
    emit selectedTabChanged();
  }
}

QVariantMap ShellViewModel::pageHeading(const QString& id) const {
  const AppTab& tab = initialTab(id.toStdString());
  return {{QStringLiteral("title"), toQString(tab.pageTitle)},
          {QStringLiteral("subtitle"), toQString(tab.pageSubtitle)}};
}

QString ShellViewModel::shortcutText(const QVariant& shortcut) const {
  const QKeySequence sequence = shortcut.typeId() == QMetaType::Int
                                    ? QKeySequence(static_cast<QKeySequence::StandardKey>(shortcut.toInt()))
                                    : QKeySequence(shortcut.toString());
  return sequence.toString(QKeySequence::NativeText);
}

void ShellViewModel::openReleaseNotes() {
  workspace_.openURL(kReleaseNotesPage);
}

void ShellViewModel::copyBuild() {
  clipboard_.setText(updates().versionLabel());
  copiedTimer_.start();
  emit buildLabelChanged();
}

}  // namespace cirrovane
