#include "base/DisplayText.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/LocalTime.h"
#include "cli/TextStyle.h"
#include "stores/IncidentFilter.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

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

ExitStatus list(const IncidentFilter& filter, CommandContext& context) {
  printRecords(context.openIncidents()->records(), filter, context);
  return ExitStatus::done;
}

ExitStatus change(const std::string& identifier, void (IncidentStore::*verb)(const IncidentRecord&),
                  CommandContext& context) {
  const auto store = context.openIncidents();
  const std::optional<UUID> id = UUID::fromText(identifier);
  const auto found = std::ranges::find_if(store->records(), [&](const auto& record) { return record.id == id; });
  if (found == store->records().end()) {
    return reportFailure(context, fmt::format("There is no incident {}.", identifier));
  }
  ((*store).*verb)(*found);
  if (const std::optional<Failure>& failure = store->saveFailure()) {
    return reportFailure(context, "The incident was not changed: " + failure->message);
  }
  printRecords(store->records(), {}, context);
  return ExitStatus::done;
}

/// What the command line holds: raw values.
struct FilterTexts {
  std::string scope{rawValue(IncidentScope::all)};
  std::string severity{rawValue(IncidentSeverityFilter::all)};
};

IncidentFilter filterOf(const FilterTexts& texts) {
  IncidentFilter filter;
  fromRawValue(texts.scope, filter.scope);
  fromRawValue(texts.severity, filter.severity);
  return filter;
}

template <class Choices>
std::vector<std::string> rawValuesOf(const Choices& choices) {
  std::vector<std::string> names;
  names.reserve(choices.size());
  for (const auto& choice : choices) {
    names.emplace_back(choice.rawValue);
  }
  return names;
}

}  // namespace

void addIncidentsCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command = addCommand(app, "incidents", "Show recurring problems; resolve and reopen them",
                                 "Examples:\n"
                                 "  cirrovanectl incidents --scope active\n"
                                 "  cirrovanectl incidents resolve 6F9619FF-8B86-D011-B42D-00CF4FC964FF");
  takeVerbs(command);
  const auto filter = std::make_shared<FilterTexts>();
  addArgument(command,
              {.name = "--scope",
               .help = "Which: all, active or resolved (default: all)",
               .choices = rawValuesOf(kIncidentScopes)},
              filter->scope);
  addArgument(command,
              {.name = "--severity",
               .help = "How serious: all, warning or error (default: all)",
               .choices = rawValuesOf(kIncidentSeverityFilters)},
              filter->severity);
  addJSONOption(command, chosen);

  const auto identifier = std::make_shared<std::string>();
  const ArgumentForm form{.name = "ID", .help = "The incident's identifier", .isRequired = true};
  CLI::App& resolveVerb = addCommand(command, "resolve", "Mark an incident as resolved");
  addArgument(resolveVerb, form, *identifier);
  addJSONOption(resolveVerb, chosen);
  CLI::App& reopenVerb = addCommand(command, "reopen", "Mark an incident as active again");
  addArgument(reopenVerb, form, *identifier);
  addJSONOption(reopenVerb, chosen);

  onChosen(command, [&chosen, &resolveVerb, &reopenVerb, filter, identifier] {
    if (isChosen(resolveVerb)) {
      chosen.run = [identifier](auto& context) { return change(*identifier, &IncidentStore::markResolved, context); };
    } else if (isChosen(reopenVerb)) {
      chosen.run = [identifier](auto& context) { return change(*identifier, &IncidentStore::reopen, context); };
    } else {
      chosen.run = [filter](CommandContext& context) { return list(filterOf(*filter), context); };
    }
  });
}

}  // namespace cirrovane
