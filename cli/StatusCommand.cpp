#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/LocalTime.h"
#include "cli/TextStyle.h"
#include "diagnostics/StatusText.h"

#include <string>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

class StatusPage {
 public:
  StatusPage(Output& out, const TextStyle& style) : out_(out), style_(style) {}

  void heading(std::string_view text) { out_.write(fmt::format("{}\n", style_.bold(text))); }
  void row(std::string_view label, std::string_view value) { out_.write(fmt::format("  {:<22}{}\n", label, value)); }

 private:
  Output& out_;
  const TextStyle& style_;
};

std::string memoryUsedText(const AmountText& amounts, const SystemStatusSnapshot& status) {
  const std::string used = byteCountText(amounts, status.memoryUsedBytes);
  const std::optional<double> ratio = memoryUsageRatio(status);
  return ratio ? fmt::format("{} ({:.0f}%)", used, *ratio * 100) : used;
}

void print(const SystemStatusSnapshot& status, CommandContext& context) {
  const TextStyle style(context.out.isColoured());
  const AmountText& amounts = *context.machine.amountText;
  StatusPage page(context.out, style);
  page.row("Captured", localTimeText(status.capturedAt));
  page.heading("CPU");
  page.row("Usage", cpuUsageText(status));
  page.row("Load", loadText(status));
  page.row("Thermal State", status.thermalState);
  page.row("Temperature", temperatureText(status));
  page.heading("Memory");
  page.row("Used", memoryUsedText(amounts, status));
  page.row("Total", byteCountText(amounts, std::optional(status.memoryTotalBytes)));
  page.heading("Storage");
  page.row("Free", byteCountText(amounts, status.diskFreeBytes));
  page.row("Total", byteCountText(amounts, status.diskTotalBytes));
  page.heading("Power");
  page.row("Battery", batteryText(status));
  page.row("Charging", chargingText(status));
  page.row("Low Power Mode", lowPowerModeText(status));
  page.row("Uptime", amounts.duration(status.uptimeSeconds));
  page.heading("Network");
  page.row("iCloud Reachability", reachabilityText(status));
}

ExitStatus status(CommandContext& context) {
  const SystemStatusSnapshot snapshot = context.captureStatus();
  if (context.wantsJSON) {
    writeJSONDocument(context.out, snapshot);
  } else {
    print(snapshot, context);
  }
  return ExitStatus::done;
}

}  // namespace

void addStatusCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command = addCommand(app, "status", "Measure the machine: processor, memory, disk, battery, network",
                                 "Examples:\n"
                                 "  cirrovanectl status\n"
                                 "  cirrovanectl status --json | jq .batteryPercent");
  addJSONOption(command, chosen);
  onChosen(command, [&chosen] { chosen.run = [](CommandContext& context) { return status(context); }; });
}

}  // namespace cirrovane
