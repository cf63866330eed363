#include "base/ASCII.h"
#include "base/DisplayText.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/TextStyle.h"
#include "diagnostics/PlatformDiagnosticsService.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace cirrovane {
namespace {

void printFindings(const std::vector<DiagnosticFinding>& findings, const TextStyle& style, Output& out) {
  std::size_t width = 0;
  for (const DiagnosticFinding& finding : findings) {
    width = std::max(width, finding.title.size());
  }
  for (const DiagnosticFinding& finding : findings) {
    const std::string severity = fmt::format("{:<7}", rawValue(finding.severity));
    out.write(fmt::format("{}  {:<11}  {}  {}\n", style.inSeverityColour(finding.severity, severity),
                          rawValue(finding.domain), style.bold(fmt::format("{:<{}}", finding.title, width)),
                          displayOutput(finding.detail)));
  }
}

/// A list of findings that is silently shorter would pass for a healthy machine's.
void sayWhatWasNotReached(const std::vector<FindingKey>& keys, Output& err) {
  std::vector<std::string> titles;
  titles.reserve(keys.size());
  for (const FindingKey& key : keys) {
    titles.push_back(key.title);
  }
  if (!titles.empty()) {
    err.write(fmt::format("cirrovanectl: A tool took too long, so nothing is known of: {}\n", fmt::join(titles, ", ")));
  }
}

ExitStatus diagnose(std::optional<DiagnosticDomain> domain, CommandContext& context) {
  const std::vector<WatchFolder> folders = context.openWatchlist()->folders();
  const SyncHealthReport report = context.scan(folders);
  const CollectedFindings collected = context.collectFindings(domain, report, folders);
  if (context.wantsJSON) {
    writeJSONDocument(context.out, collected.findings);
  } else {
    printFindings(collected.findings, TextStyle(context.out.isColoured()), context.out);
  }
  sayWhatWasNotReached(collected.notReached, context.err);
  return ExitStatus::done;
}

/// The domain of a name in any case; absent for any other text.
std::optional<DiagnosticDomain> domainNamed(const std::string& name) {
  for (const auto& [domain, text] : kDiagnosticDomains) {
    if (equalIgnoringCase(name, text)) {
      return domain;
    }
  }
  return std::nullopt;
}

std::string domainNames() {
  std::vector<std::string> names;
  names.reserve(kDiagnosticDomains.size());
  for (const auto& [domain, text] : kDiagnosticDomains) {
    names.push_back(lowerCase(text));
  }
  return fmt::format("{}", fmt::join(names, ", "));
}

std::string complaintAboutDomain(const std::string& name) {
  return domainNamed(name) ? "" : fmt::format("There is no domain {}, only {}", name, domainNames());
}

}  // namespace

void addDiagnoseCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto domain = std::make_shared<std::string>();
  CLI::App& command =
      addCommand(app, "diagnose", "Judge the machine and its connection to iCloud",
                 "Scans the watchlist first, since some findings are about it. Nothing is recorded.\n\n"
                 "Examples:\n"
                 "  cirrovanectl diagnose\n"
                 "  cirrovanectl diagnose network\n"
                 "  cirrovanectl diagnose --json | jq -r '.[] | select(.severity == \"error\") | .detail'");
  addArgument(
      command,
      {.name = "DOMAIN", .help = "One of " + domainNames() + " (default: all)", .complaint = complaintAboutDomain},
      *domain);
  addJSONOption(command, chosen);
  onChosen(command, [&chosen, domain] {
    chosen.run = [domain](CommandContext& context) { return diagnose(domainNamed(*domain), context); };
  });
}

}  // namespace cirrovane
