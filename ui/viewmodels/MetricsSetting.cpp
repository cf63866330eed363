#include "ui/viewmodels/MetricsSetting.h"

#include "ui/viewmodels/Text.h"

#include <QPointer>
#include <optional>
#include <string>

namespace cirrovane {

MetricsSetting::MetricsSetting(MetricsFile& file, Panels& panels, QObject* parent)
    : QObject(parent), file_(file), panels_(panels) {
  subscription_ = file_.failure().afterChange([this](const std::optional<Failure>&) { emit changed(); });
}

QString MetricsSetting::place() const {
  return toDisplay(file_.place());
}

QString MetricsSetting::note() const {
  const std::optional<Failure>& failure = file_.failure().value();
  return failure ? QStringLiteral("The metrics could not be written. ") + toDisplay(failure->message) : QString();
}

void MetricsSetting::setOn(bool isOn) {
  if (isOn && file_.place().empty()) {
    choosePlace();
    return;
  }
  file_.setOn(isOn);
  emit changed();
}

void MetricsSetting::choosePlace() {
  // Whoever called by a screen reader has an answer before the panel opens, and may work in it.
  QMetaObject::invokeMethod(
      this,
      [this] {
        const QPointer<MetricsSetting> self = this;
        const std::optional<std::string> place =
            panels_.chooseFileToSave({"Write Metrics", "cirrovane.prom", {.title = "Prometheus", .suffix = "prom"}});
        // The panel handles events, and one of them may have ended everything.
        if (place && self != nullptr) {
          file_.writeTo(*place);
          emit changed();
        }
      },
      Qt::QueuedConnection);
}

}  // namespace cirrovane
