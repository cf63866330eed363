#pragma once

#include "ui/viewmodels/PageViewModel.h"
#include "ui/viewmodels/RowListModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstdint>
#include <string>

namespace cirrovane {

/// What is easily missed: how steady the verdict was, what the scans do not cover, the latest scans of either verdict.
class AwarenessViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString recentStability READ recentStability NOTIFY changed)
  Q_PROPERTY(cirrovane::RowListModel* rows READ rows CONSTANT)

 public:
  explicit AwarenessViewModel(QObject* parent = nullptr);

  /// "66% safe in last 3 scans".
  const QString& recentStability() const { return recentStability_; }
  /// Each with a "symbol" and the "severity" whose colour it has, a "title" and a "text"; where there is more to say a
  /// "reason", a "folder" and an "explanation"; the "date" of a scan; and, where a file can be shown in the file
  /// manager, its "path".
  RowListModel* rows() { return &rows_; }

  /// Shows the file that stood first in the way at the last failed scan.
  Q_INVOKABLE void revealLastFailed();

 protected:
  void begin() override;
  void update() override;

 private:
  RowListModel::Row coverageRow() const;
  RowListModel::Row cloudOnlyRow() const;
  RowListModel::Row failedRow() const;
  RowListModel::Row safeRow() const;

  std::int64_t coverageGapCount_ = 0;
  Subscription reportSubscription_;
  bool isKnown_ = false;
  QString recentStability_;
  RowListModel rows_;
};

}  // namespace cirrovane
