#include "ui/viewmodels/LeavingSetting.h"

#include "coordinator/DefaultsKeys.h"
#include "ui/viewmodels/Text.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace cirrovane {
namespace {

constexpr std::array kBatteryLevels = {20, AwakeRules::kUsualLeastPercent, 50, 80};

/// The stored level, where it is one of ours.
int storedLevel(const UserDefaults& userDefaults) {
  const auto stored = userDefaults.text(kLeastBatteryPercentKey);
  const auto* const level =
      std::ranges::find_if(kBatteryLevels, [&](int each) { return stored == std::to_string(each); });
  return level != kBatteryLevels.end() ? *level : AwakeRules::kUsualLeastPercent;
}

}  // namespace

LeavingSetting::LeavingSetting(UserDefaults& userDefaults, LeaveGate& gate, QObject* parent)
    : QObject(parent), userDefaults_(userDefaults), gate_(gate) {
  std::vector<ChoiceRow> levels;
  levels.reserve(kBatteryLevels.size());
  for (const int level : kBatteryLevels) {
    levels.push_back({.value = QString::number(level), .title = QStringLiteral("%1%").arg(level)});
  }
  batteryLevels_.setRows(std::move(levels));
  preferences_.keepsAwakeWhilePending = userDefaults_.choice(kKeepAwakeWhilePendingKey).value_or(false);
  preferences_.awake.leastBatteryPercent = storedLevel(userDefaults_);
  preferences_.asksBeforeShutdown = userDefaults_.choice(kAskBeforeShutdownKey).value_or(false);
  awakeSubscription_ = gate_.awake().afterChange([this](const AwakeStanding&) { emit changed(); });
  obstacleSubscription_ = gate_.obstacleToAsking().afterChange([this](const auto&) { emit changed(); });
  gate_.setPreferences(preferences_);
}

QString LeavingSetting::keepAwakeNote() const {
  return keepsAwake() ? toQString(gate_.awake().value().reason) : QString();
}

QString LeavingSetting::askNote() const {
  return toQString(gate_.obstacleToAsking().value().value_or(""));
}

// A choice that cannot be stored holds while the application runs.

void LeavingSetting::setKeepsAwake(bool keepsAwake) {
  if (keepsAwake != preferences_.keepsAwakeWhilePending) {
    preferences_.keepsAwakeWhilePending = keepsAwake;
    static_cast<void>(userDefaults_.set(kKeepAwakeWhilePendingKey, keepsAwake));
    apply();
  }
}

void LeavingSetting::setLeastBattery(const QString& percent) {
  if (percent != leastBattery()) {
    static_cast<void>(userDefaults_.set(kLeastBatteryPercentKey, percent.toStdString()));
    preferences_.awake.leastBatteryPercent = percent.toInt();
    apply();
  }
}

void LeavingSetting::setAsksBeforeShutdown(bool asks) {
  if (asks != preferences_.asksBeforeShutdown) {
    preferences_.asksBeforeShutdown = asks;
    static_cast<void>(userDefaults_.set(kAskBeforeShutdownKey, asks));
    apply();
  }
}

void LeavingSetting::apply() {
  gate_.setPreferences(preferences_);
  emit changed();
}

}  // namespace cirrovane
