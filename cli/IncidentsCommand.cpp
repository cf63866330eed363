#include "cli/Command.h"
#include "cli/LocalTime.h"
#include "cli/TextStyle.h"
#include "core/DisplayText.h"
#include "stores/IncidentFilter.h"
#include "stores/IncidentStore.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace cirrovane {
namespace {

void printRecord(const IncidentRecord& record, const TextStyle& style, Output& out) {
  const HealthState colour = record.isResolved                              ? HealthState::safe
                             : record.severity == DiagnosticSeverity::error ? HealthState::danger
                                                                            : HealthState::warning;
  const std::string state = record.isResolved ? "resolved" : std::string(rawValue(record.severity));
  out.write(fmt::format("{}  {}\n", style.inStateColour(colour, fmt::format("{:<8}", state)),
                        style.bold(fmt::format("{}: {}", rawValue(record.domain), displayText(record.title)))));
  out.write(fmt::format("{:10}{}\n", "", displayText(record.lastDetail)));
  out.write(
      fmt::format("{:10}{}\n", "",
                  style.dim(fmt::format("seen {} x, {} to {}  {}", record.occurrences, localTimeText(record.firstSeen),
                                        localTimeText(record.lastSeen), record.id.text()))));
}

void printRecords(std::vector<IncidentRecord> records, const IncidentFilter& filter, CommandContext& context) {
  std::erase_if(records, [&](const IncidentRecord& record) { return !filter.keeps(record); });
  if (context.wantsJSON) {
    writeJSONDocument(context.out, records);
    return;
  }
  if (records.empty()) {
    context.out.write("No incidents.\n");
  }
  const TextStyle style(context.out.isColoured());
  for (const IncidentRecord& record : records) {
    printRecord(record, style, context.out);
  }
}

IncidentStore openIncidents(const Machine& machine) {
  return {machine.fileSystem(), machine.fileStorage(), machine.clock()};
}

ExitStatus list(const IncidentFilter& filter, CommandContext& context) {
  printRecords(openIncidents(context.machine).records(), filter, context);
  return ExitStatus::done;
}

ExitStatus change(const std::string& identifier, void (IncidentStore::*verb)(const IncidentRecord&),
                  CommandContext& context) {
  IncidentStore store = openIncidents(context.machine);
  const std::optional<UUID> id = UUID::fromText(identifier);
  const auto found = std::ranges::find_if(store.records(), [&](const auto& record) { return record.id == id; });
  if (found == store.records().end()) {
    return reportFailure(context, fmt::format("There is no incident {}.", identifier));
  }
  (store.*verb)(*found);
  if (const std::optional<Failure>& failure = store.saveFailure()) {
    return reportFailure(context, "The incident was not changed: " + failure->message);
  }
  printRecords(store.records(), {}, context);
  return ExitStatus::done;
}

/// An option that takes the raw value of one of the choices.
template <class Filter, class Choices>
void addFilterOption(CLI::App& command, const std::string& name, Filter& target, const Choices& choices,
                     const std::string& description) {
  std::vector<std::string> names;
  names.reserve(choices.size());
  for (const auto& choice : choices) {
    names.emplace_back(choice.rawValue);
  }
  command
      .add_option_function<std::string>(
          name, [&target](const std::string& text) { fromRawValue(text, target); }, description)
      ->check(CLI::IsMember(names));
}

}  // namespace

void addIncidentsCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App* command = app.add_subcommand("incidents", "Show recurring problems; resolve and reopen them");
  command->footer(
      "Examples:\n"
      "  cirrovanectl incidents --scope active\n"
      "  cirrovanectl incidents resolve 6F9619FF-8B86-D011-B42D-00CF4FC964FF");
  command->require_subcommand(0, 1);
  const auto filter = std::make_shared<IncidentFilter>();
  addFilterOption(*command, "--scope", filter->scope, kIncidentScopes, "Which: all, active or resolved (default: all)");
  addFilterOption(*command, "--severity", filter->severity, kIncidentSeverityFilters,
                  "How serious: all, warning or error (default: all)");
  addJSONOption(*command, chosen);

  const auto identifier = std::make_shared<std::string>();
  CLI::App* resolveVerb = command->add_subcommand("resolve", "Mark an incident as resolved");
  resolveVerb->add_option("ID", *identifier, "The incident's identifier")->required();
  addJSONOption(*resolveVerb, chosen);
  CLI::App* reopenVerb = command->add_subcommand("reopen", "Mark an incident as active again");
  reopenVerb->add_option("ID", *identifier, "The incident's identifier")->required();
  addJSONOption(*reopenVerb, chosen);

  command->callback([&chosen, filter, identifier, resolveVerb, reopenVerb] {
    if (resolveVerb->parsed()) {
      chosen.run = [identifier](auto& context) { return change(*identifier, &IncidentStore::markResolved, context); };
    } else if (reopenVerb->parsed()) {
      chosen.run = [identifier](auto& context) { return change(*identifier, &IncidentStore::reopen, context); };
    } else {
      chosen.run = [filter](CommandContext& context) { return list(*filter, context); };
    }
  });
}

}  // namespace cirrovane
