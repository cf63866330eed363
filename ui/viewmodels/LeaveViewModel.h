#pragma once

#include "base/Published.h"
#include "coordinator/DashboardViewModel.h"
#include "coordinator/leaving/LeaveGate.h"
#include "platform/TimeText.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// Leaving as window, panel and icon show it: the wait for a safe moment, what keeps the machine awake, and the
/// question before a shutdown that comes too early.
class LeaveViewModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Made by the application")
  Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY changed)
  Q_PROPERTY(QString waitText READ waitText NOTIFY changed)
  Q_PROPERTY(QString outcome READ outcome NOTIFY changed)
  Q_PROPERTY(QString awakeText READ awakeText NOTIFY changed)
  Q_PROPERTY(bool isAsked READ isAsked NOTIFY changed)
  Q_PROPERTY(bool canWait READ canWait NOTIFY changed)
  Q_PROPERTY(QString question READ question NOTIFY changed)
  Q_PROPERTY(QString left READ left NOTIFY changed)

 public:
  /// The arguments outlive this.
  LeaveViewModel(LeaveGate& gate, const DashboardViewModel& dashboard, const TimeText& timeText,
                 QObject* parent = nullptr);

  bool isWaiting() const { return gate_.wait().value().isWaiting(); }
  /// What is waited for; empty while nothing is.
  QString waitText() const;
  /// Why the latest wait came to nothing; empty where it did not.
  QString outcome() const;
  /// "Kept awake since 9:41:07 AM.", or why it is not though it should be; empty otherwise.
  QString awakeText() const;
  /// Whether a shutdown waits for the user, or for a safe moment by the user's wish.
  bool isAsked() const { return gate_.question().value() != QuestionState::calm; }
  /// Whether "Wait" is an answer still.
  bool canWait() const { return gate_.question().value() == QuestionState::asked; }
  QString question() const;
  /// What is left to upload, and how long that takes; else the verdict's own words.
  QString left() const;

  /// Has the machine sleep as soon as that is safe.
  Q_INVOKABLE void sleepWhenSafe() { gate_.leaveWhenSafe(PowerAct::sleep); }
  Q_INVOKABLE void cancel() { gate_.cancel(); }
  Q_INVOKABLE void answerWait() { gate_.answerWait(); }
  Q_INVOKABLE void answerLeave() { gate_.answerLeave(); }

 signals:
  void changed();
  /// The user has to be asked now.
  void asked();

 private:
  LeaveGate& gate_;
  const DashboardViewModel& dashboard_;
  const TimeText& timeText_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace cirrovane
