#pragma once

#include "coordinator/CoverageReview.h"
#include "coordinator/DashboardViewModel.h"
#include "platform/AmountText.h"
#include "platform/TimeText.h"
#include "ui/viewmodels/AppSettings.h"
#include "ui/viewmodels/LeaveViewModel.h"

#include <QObject>
#include <QtQmlIntegration>

namespace cirrovane {

class AllBlockersViewModel;
class CoverageViewModel;
class ExportViewModel;
class IncidentCenterViewModel;
class PageViewModel;
class ToolsViewModel;
class WatchlistViewModel;
struct ToolsEnvironment;

/// The key to what is for one class alone. Only `Owner` can make it.
template <class Owner>
class For {
  friend Owner;
  For() = default;
};

/// The ground of the pages' view models. Each may read the results; the rest takes the key of a page that uses it. QML
/// only hands it on. It outlives every page.
class PageContext : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(cirrovane::LeaveViewModel* leaving READ leaving CONSTANT)

 public:
  struct Parts {
    DashboardViewModel& dashboard;
    CoverageReview& coverage;
    const TimeText& timeText;
    const AmountText& amountText;
    AppSettings& settings;
    const ToolsEnvironment& tools;
    /// For the pages in QML alone.
    LeaveViewModel* leaving = nullptr;
  };

  explicit PageContext(const Parts& parts, QObject* parent = nullptr) : QObject(parent), parts_(parts) {}

  /// The results, to read.
  const DashboardViewModel& dashboard() const { return parts_.dashboard; }
  /// The coverage, to read.
  const CoverageReview& coverage() const { return parts_.coverage; }
  const TimeText& timeText() const { return parts_.timeText; }
  const AmountText& amountText() const { return parts_.amountText; }
  /// What both surfaces show and do about leaving.
  LeaveViewModel* leaving() const { return parts_.leaving; }

  // The dashboard, to act on:

  DashboardViewModel& dashboard(For<PageViewModel> /*key*/) const { return parts_.dashboard; }
  DashboardViewModel& dashboard(For<ExportViewModel> /*key*/) const { return parts_.dashboard; }
  DashboardViewModel& dashboard(For<IncidentCenterViewModel> /*key*/) const { return parts_.dashboard; }
  DashboardViewModel& dashboard(For<WatchlistViewModel> /*key*/) const { return parts_.dashboard; }

  CoverageReview& coverage(For<CoverageViewModel> /*key*/) const { return parts_.coverage; }
  AppSettings& settings(For<IncidentCenterViewModel> /*key*/) const { return parts_.settings; }
  const ToolsEnvironment& tools(For<AllBlockersViewModel> /*key*/) const { return parts_.tools; }
  const ToolsEnvironment& tools(For<ToolsViewModel> /*key*/) const { return parts_.tools; }

 private:
  Parts parts_;
};

}  // namespace cirrovane
