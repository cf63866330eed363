#include "ui/viewmodels/ShellViewModel.h"

#include "coordinator/WebPages.h"
#include "ui/viewmodels/Text.h"

#include <QKeySequence>
#include <QMetaType>
#include <chrono>
#include <span>
#include <vector>

namespace cirrovane {
namespace {

constexpr std::chrono::seconds kCopiedNoteLifetime{2};

std::vector<EntryRow> tabRowsOf(std::span<const AppTab> tabs) {
  std::vector<EntryRow> rows;
  for (const AppTab& tab : tabs) {
    rows.push_back({.name = toQString(tab.id), .title = toQString(tab.title), .symbol = toQString(tab.sfSymbol)});
  }
  return rows;
}

}  // namespace

ShellViewModel::ShellViewModel(DashboardViewModel& dashboard, AppUpdateService& updates, Clipboard& clipboard,
                               Workspace& workspace, const AppTab& firstTab, QObject* parent)
    : SurfaceViewModel(dashboard, updates, parent),
      clipboard_(clipboard),
      workspace_(workspace),
      selectedTab_(toQString(firstTab.id)) {
  primaryTabs_.setRows(tabRowsOf(cirrovane::primaryTabs()));
  extraTabs_.setRows(tabRowsOf(cirrovane::extraTabs()));
  copiedTimer_.setSingleShot(true);
  copiedTimer_.setInterval(kCopiedNoteLifetime);
  connect(&copiedTimer_, &QTimer::timeout, this, &ShellViewModel::buildLabelChanged);
  follow(updates.publishedUpdateStatusLine(), [this] { emit updateStatusLineChanged(); });
}

QString ShellViewModel::extraTabsLabel() const {
  const EntryRow* tab = extraTabs_.find(extraTabs_.indexOf(selectedTab_));
  return tab != nullptr ? tab->title : QStringLiteral("More");
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
