#include "ui/viewmodels/LeaveViewModel.h"

#include "coordinator/UploadWords.h"
#include "coordinator/leaving/LeaveWords.h"
#include "ui/viewmodels/Text.h"

#include <string>

namespace cirrovane {

LeaveViewModel::LeaveViewModel(LeaveGate& gate, const DashboardViewModel& dashboard, const TimeText& timeText,
                               QObject* parent)
    : QObject(parent), gate_(gate), dashboard_(dashboard), timeText_(timeText) {
  const auto tell = [this](const auto&) { emit changed(); };
  subscriptions_.push_back(gate_.wait().afterChange(tell));
  subscriptions_.push_back(gate_.awake().afterChange(tell));
  subscriptions_.push_back(dashboard_.publishedUploads().afterChange(tell));
  subscriptions_.push_back(gate_.question().afterChange([this](QuestionState state) {
    emit changed();
    if (state == QuestionState::asked) {
      emit asked();
    }
  }));
}

QString LeaveViewModel::waitText() const {
  return toQString(waitSentence(gate_.wait().value()));
}

QString LeaveViewModel::outcome() const {
  return toDisplay(outcomeSentence(gate_.wait().value()));
}

QString LeaveViewModel::awakeText() const {
  const AwakeStanding& awake = gate_.awake().value();
  if (awake.since) {
    return QStringLiteral("Kept awake since %1.").arg(toQString(timeText_.moment(*awake.since, dashboard_.now())));
  }
  return awake.reason.empty() ? QString() : QStringLiteral("Not kept awake. ") + toDisplay(awake.reason);
}

QString LeaveViewModel::question() const {
  return toQString(questionSentence(gate_.question().value()));
}

QString LeaveViewModel::left() const {
  const std::string sentence = uploadsSentence(dashboard_.uploads(), dashboard_.now());
  return toQString(sentence.empty() ? dashboard_.report().summary : sentence);
}

}  // namespace cirrovane
