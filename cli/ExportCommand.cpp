#include "base/ByteSource.h"
#include "base/DisplayText.h"
#include "base/Path.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderArgument.h"
#include "cli/InlineRefresh.h"
#include "evidence/Evidence.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <fmt/format.h>

namespace cirrovane {
namespace {

constexpr const char* kOutput = "-";

/// What was typed; empty texts where nothing was.
struct ExportArguments {
  std::string packet;
  std::string page;
  std::string redaction;
  std::string from;
};

std::optional<std::string> placeOf(const std::string& argument) {
  if (argument.empty()) {
    return std::nullopt;
  }
  return argument == kOutput ? argument : absolutePath(argument);
}

ExitStatus exportEvidence(const EvidenceMaker& make, const ExportArguments& arguments, CommandContext& context) {
  Redaction redaction = Redaction::none;
  fromRawValue(arguments.redaction, redaction);
  const EvidenceFiles files{.packet = placeOf(arguments.packet),
                            .page = placeOf(arguments.page),
                            .output = [&](std::string_view piece) { return context.out.write(piece); }};
  if (const auto failure = saveEvidence(make, redaction, files, *context.machine.fileStorage)) {
    return reportFailure(context, "Export failed: " + failure->message);
  }
  if (context.wantsJSON || files.packet == kOutput || files.page == kOutput) {
    return ExitStatus::done;
  }
  for (const auto& [what, file] : {std::pair{"Proof packet", files.packet}, {"Page", files.page}}) {
    if (file) {
      context.out.write(fmt::format("{} exported to {}.\n", what, displayText(lastPathComponent(*file))));
    }
  }
  return ExitStatus::done;
}

ExitStatus exportSent(const ExportArguments& arguments, CommandContext& context) {
  Result<ByteSource> source = openByteSource(arguments.from == kOutput ? arguments.from : absolutePath(arguments.from));
  if (!source) {
    return reportFailure(context, "Export failed: " + source.message());
  }
  return exportEvidence(evidenceFrom(std::move(*source)), arguments, context);
}

ExitStatus exportFresh(const ExportArguments& arguments, CommandContext& context) {
  const InlineRefresh refreshed(context);
  if (const std::optional<Failure> loss = refreshed.loss()) {
    // The packet is what was asked for, and it can still be made.
    reportFailure(context, "The scan was not recorded: " + loss->message);
  }
  const ProofPacket packet = refreshed.cycle().proofPacket();
  return exportEvidence(evidenceOf(packet, context.machine.fileSystem->homeDirectory()), arguments, context);
}

void refuseNonsense(const ExportArguments& arguments) {
  if (arguments.packet.empty() && arguments.page.empty()) {
    refuseUsage("FILE or --html is required");
  }
  if (!arguments.packet.empty() && placeOf(arguments.packet) == placeOf(arguments.page)) {
    refuseUsage("FILE and --html are the same");
  }
}

}  // namespace

void addExportCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto arguments = std::make_shared<ExportArguments>();
  CLI::App& command =
      addCommand(app, "export", "Refresh, then write everything known into a proof packet",
                 "A file that exists is replaced, whole or not at all. docs/proof-packet.md says what a packet holds,\n"
                 "and what could still tell of names that are hidden.\n\n"
                 "Examples:\n"
                 "  cirrovanectl export proof.json\n"
                 "  cirrovanectl export --redact names --html proof.html\n"
                 "  cirrovanectl export --from proof.json --redact strict safe-to-send.json\n"
                 "  cirrovanectl export - | jq '.diagnostics[] | select(.severity != \"ok\")'");
  addArgument(command,
              {.name = "FILE", .help = "The file to write; - for standard output", .complaint = complaintAboutFile},
              arguments->packet);
  addArgument(command,
              {.name = "--html",
               .help = "Write a page for a person, too, or alone; - for standard output",
               .valueName = "FILE",
               .complaint = complaintAboutFile},
              arguments->page);
  addArgument(command,
              {.name = "--redact",
               .help = "Hide the names of folders and files; strict hides extensions and the system's own words too",
               .choices = {"names", "strict"}},
              arguments->redaction);
  addArgument(command,
              {.name = "--from",
               .help = "Take this packet, and do not refresh; - for standard input",
               .valueName = "PACKET",
               .complaint = complaintAboutFile},
              arguments->from);
  addFlag(command, "--json", chosen.wantsJSON, "Print nothing: the packet is the document");
  onChosen(command, [&chosen, arguments] {
    refuseNonsense(*arguments);
    chosen.run = [arguments](CommandContext& context) {
      return arguments->from.empty() ? exportFresh(*arguments, context) : exportSent(*arguments, context);
    };
  });
}

}  // namespace cirrovane
