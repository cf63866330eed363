#include "ui/viewmodels/SystemStatusViewModel.h"

#include "diagnostics/StatusText.h"
#include "ui/viewmodels/Text.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr double kHighMemoryUse = 0.85;
constexpr double kRaisedMemoryUse = 0.7;

void show(ListModel<ValueRow>& list, std::initializer_list<std::pair<const char*, std::string>> values) {
  std::vector<ValueRow> rows;
  for (const auto& [label, value] : values) {
    rows.push_back({.label = toQString(label), .value = toDisplay(value)});
  }
  list.setRows(std::move(rows));
}

}  // namespace

void SystemStatusViewModel::begin() {
  follow(dashboard().publishedSystemStatus());
  follow(dashboard().publishedVerdict());
  follow(dashboard().publishedLiveness());
}

void SystemStatusViewModel::update() {
  status_ = dashboard().systemStatus();
  const AmountText& amounts = context()->amountText();
  show(cpu_, {{"Usage", cpuUsageText(status_)},
              {"Load", loadText(status_)},
              {"Thermal State", status_.thermalState},
              {"Temperature", temperatureText(status_)}});
  show(memory_, {{"Used", byteCountText(amounts, status_.memoryUsedBytes)},
                 {"Total", byteCountText(amounts, std::optional(status_.memoryTotalBytes))}});
  show(storage_, {{"Free", byteCountText(amounts, status_.diskFreeBytes)},
                  {"Total", byteCountText(amounts, status_.diskTotalBytes)}});
  show(power_, {{"Battery", batteryText(status_)},
                {"Charging", chargingText(status_)},
                {"Low Power Mode", lowPowerModeText(status_)},
                {"Uptime", amounts.duration(status_.uptimeSeconds)}});
  show(network_, {{"iCloud Reachability", reachabilityText(status_)}});
  showLive();
}

void SystemStatusViewModel::showLive() {
  const ShownVerdict& verdict = dashboard().verdict();
  const Liveness& liveness = dashboard().liveness();
  std::string confirmed = "Not scanned yet";
  if (verdict.confirmedAt) {
    const bool isLive = liveness.state == LivenessState::live;
    confirmed = isLive ? "Now" : context()->timeText().moment(*verdict.confirmedAt, dashboard().now());
  }
  const std::string reason = liveness.reason.empty() ? "None" : liveness.reason;
  show(live_, {{"State", std::string(livenessLabel(liveness.state))},
               {"Reason", reason},
               {"Verdict Confirmed", confirmed},
               {"Changes Missed", std::to_string(liveness.disagreements)}});
}

QString SystemStatusViewModel::capturedAt() const {
  if (context() == nullptr) {
    return {};
  }
  return status_ == SystemStatusSnapshot::empty()
             ? QStringLiteral("Not yet")
             : toQString(context()->timeText().moment(status_.capturedAt, dashboard().now()));
}

bool SystemStatusViewModel::hasMemoryGauge() const {
  return cirrovane::memoryUsageRatio(status_).has_value();
}

double SystemStatusViewModel::memoryUsageRatio() const {
  return cirrovane::memoryUsageRatio(status_).value_or(0);
}

QString SystemStatusViewModel::memoryUsageText() const {
  return toQString(fmt::format("{:.0f}%", memoryUsageRatio() * 100));
}

Tone SystemStatusViewModel::memoryUsageTone() const {
  const double ratio = memoryUsageRatio();
  return ratio > kHighMemoryUse ? Tone::Critical : ratio > kRaisedMemoryUse ? Tone::Warning : Tone::Good;
}

}  // namespace cirrovane
