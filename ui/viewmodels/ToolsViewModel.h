#pragma once

#include "diagnostics/OptionalTool.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/Tone.h"
#include "ui/viewmodels/ToolsEnvironment.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

namespace cirrovane {

/// An optional tool in words.
struct ToolRow {
  Q_GADGET
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString state MEMBER state)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)
  Q_PROPERTY(QString purpose MEMBER purpose)
  Q_PROPERTY(QString unlocks MEMBER unlocks)
  Q_PROPERTY(QString installCommand MEMBER installCommand)
  Q_PROPERTY(QString status MEMBER status)
  Q_PROPERTY(bool isInstalled MEMBER isInstalled)
  Q_PROPERTY(bool isInstalling MEMBER isInstalling)
  Q_PROPERTY(bool canInstall MEMBER canInstall)

 public:
  QString name;
  /// "Installed"
  QString state;
  /// Of the state.
  Tone tone = Tone::Plain;
  QString purpose;
  QString unlocks;
  QString installCommand;
  /// How the latest copy or install ended; empty before the first.
  QString status;
  bool isInstalled = false;
  bool isInstalling = false;
  bool canInstall = false;

  friend bool operator==(const ToolRow&, const ToolRow&) = default;
  friend const QString& keyOf(const ToolRow& row) { return row.name; }
};

/// The optional tools, and their installs, which go on without the page.
class ToolsViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString availableText READ availableText CONSTANT)
  Q_PROPERTY(QString installedText READ installedText NOTIFY changed)
  Q_PROPERTY(bool hasHomebrew READ hasHomebrew NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* tools READ tools CONSTANT)

 public:
  using PageViewModel::PageViewModel;

  QString availableText() const;
  QString installedText() const;
  bool hasHomebrew() const { return hasHomebrew_; }
  ListModel<ToolRow>* tools() { return &tools_; }

  /// Tools that are known to be installed.
  std::size_t installedCount() const;

  // These act on the tool of a row.

  /// Puts the command that installs it on the clipboard.
  Q_INVOKABLE void copyInstallCommand(int row);
  /// Installs it with Homebrew; does nothing during an install of it, and without Homebrew.
  Q_INVOKABLE void install(int row);

  /// Opens Homebrew's page in the browser.
  Q_INVOKABLE void openHomebrewPage();

 protected:
  void begin() override;
  void update() override;

 private:
  const ToolsEnvironment& environment() const;
  QString statusOf(std::string_view command, const ToolState& state) const;
  ToolRow rowOf(const OptionalTool& tool) const;

  ListModel<ToolRow> tools_;
  bool hasHomebrew_ = false;
  /// By command: its turns when its line was last copied.
  std::map<std::string_view, std::uint64_t> copiedAt_;
};

}  // namespace cirrovane
