#include "ui/viewmodels/AppSettings.h"

#include "coordinator/DefaultsKeys.h"

namespace cirrovane {
namespace {

constexpr const char* kClassic = "classic";

/// On before anybody chose; whatever is stored counts as the notifications themselves take it.
bool areNotificationsOn(const UserDefaults& userDefaults) {
  return !userDefaults.value(kGuardrailNotificationsEnabledKey) ||
         userDefaults.choice(kGuardrailNotificationsEnabledKey).value_or(false);
}

}  // namespace

AppSettings::AppSettings(UserDefaults& userDefaults, const System& system, QObject* parent)
    : QObject(parent),
      userDefaults_(userDefaults),
      system_(system),
      isClassic_(userDefaults.text(kVisualStyleKey) == kClassic),
      motionEnabled_(userDefaults.choice(kMotionEnabledKey).value_or(true)),
      showTerminologyOnDashboard_(userDefaults.choice(kShowTerminologyOnDashboardKey).value_or(false)),
      notificationsEnabled_(areNotificationsOn(userDefaults)) {
  visualStyles_.setRows({{.value = QStringLiteral("liquid"), .title = QStringLiteral("Liquid Glass")},
                         {.value = QStringLiteral("classic"), .title = QStringLiteral("Classic")}});
  connect(this, &AppSettings::motionEnabledChanged, this, &AppSettings::motionAllowedChanged);
  if (system_.motion != nullptr) {
    system_.motion->onChange([this] { emit motionAllowedChanged(); });
  }
}

AppSettings::~AppSettings() {
  if (system_.motion != nullptr) {
    system_.motion->onChange(nullptr);
  }
}

QString AppSettings::motionNote() const {
  return motionEnabled_ && isMotionReduced()
             ? QStringLiteral("Nothing moves: the system's settings ask for less motion.")
             : QString();
}

void AppSettings::rereadSystem() const {
  if (system_.notifications != nullptr) {
    system_.notifications->reread();
  }
  if (system_.loginItem != nullptr) {
    system_.loginItem->reread();
  }
}

// A choice that cannot be stored holds while the application runs.

void AppSettings::setVisualStyle(const QString& style) {
  const bool isClassic = style == QLatin1String(kClassic);
  if (isClassic != isClassic_) {
    isClassic_ = isClassic;
    static_cast<void>(userDefaults_.set(kVisualStyleKey, visualStyle().toStdString()));
    emit visualStyleChanged();
  }
}

void AppSettings::setMotionEnabled(bool enabled) {
  if (enabled != motionEnabled_) {
    motionEnabled_ = enabled;
    static_cast<void>(userDefaults_.set(kMotionEnabledKey, enabled));
    emit motionEnabledChanged();
  }
}

void AppSettings::setShowTerminologyOnDashboard(bool shown) {
  if (shown != showTerminologyOnDashboard_) {
    showTerminologyOnDashboard_ = shown;
    static_cast<void>(userDefaults_.set(kShowTerminologyOnDashboardKey, shown));
    emit showTerminologyOnDashboardChanged();
  }
}

void AppSettings::setNotificationsEnabled(bool enabled) {
  if (enabled != notificationsEnabled_) {
    notificationsEnabled_ = enabled;
    static_cast<void>(userDefaults_.set(kGuardrailNotificationsEnabledKey, enabled));
    emit notificationsEnabledChanged();
  }
}

}  // namespace cirrovane
