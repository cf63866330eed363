#pragma once

#include "coordinator/DashboardViewModel.h"
#include "platform/Clipboard.h"
#include "platform/CommandRunner.h"
#include "platform/Executor.h"
#include "platform/SystemInformation.h"
#include "platform/TimeText.h"
#include "platform/Workspace.h"
#include "ui/viewmodels/AppSettings.h"

#include <QObject>
#include <QtQmlIntegration>

namespace cirrovane {

/// What the view models of the pages are made over. QML only hands it on. Outlives every page.
class PageContext : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")

 public:
  struct Parts {
    DashboardViewModel& dashboard;
    AppSettings& settings;
    Clipboard& clipboard;
    Workspace& workspace;
    /// Where what was found out in the background is taken over.
    Executor& mainExecutor;
    const TimeText& timeText;
    const CommandRunner& commandRunner;
    const SystemInformation& systemInformation;
  };

  explicit PageContext(const Parts& parts, QObject* parent = nullptr) : QObject(parent), parts_(parts) {}

  DashboardViewModel& dashboard() const { return parts_.dashboard; }
  AppSettings& settings() const { return parts_.settings; }
  Clipboard& clipboard() const { return parts_.clipboard; }
  Workspace& workspace() const { return parts_.workspace; }
  Executor& mainExecutor() const { return parts_.mainExecutor; }
  const TimeText& timeText() const { return parts_.timeText; }
  const CommandRunner& commandRunner() const { return parts_.commandRunner; }
  const SystemInformation& systemInformation() const { return parts_.systemInformation; }

 private:
  Parts parts_;
};

}  // namespace cirrovane
