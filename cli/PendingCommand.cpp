#include "base/DisplayText.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderArgument.h"
#include "cli/TextStyle.h"
#include "coordinator/UploadWords.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

struct PendingOptions {
  std::vector<std::string> folders;
  std::string sort = "size";
  std::optional<std::int64_t> limit;
};

/// Whether `lhs` goes before `rhs` in the order asked for; those that are alike go by path.
bool goesBefore(const PendingUpload& lhs, const PendingUpload& rhs, std::string_view sort) {
  if (sort == "size" && lhs.bytes != rhs.bytes) {
    return lhs.bytes > rhs.bytes;
  }
  if (sort == "age" && lhs.pendingSince != rhs.pendingSince) {
    // What nobody has recorded has waited for no known time.
    return lhs.pendingSince && (!rhs.pendingSince || *lhs.pendingSince < *rhs.pendingSince);
  }
  return lhs.filePath < rhs.filePath;
}

void printHead(const PendingUploads& uploads, const UploadRecord& record, const TextStyle& style, Output& out) {
  if (uploads.pendingFiles == 0) {
    out.write("Nothing is left to upload.\n");
    return;
  }
  out.write(style.bold(leftToUploadText(uploads)) + "\n");
  const std::string when = timeLeftText(uploads, quietFor(record, uploads.generatedAt));
  const std::string rate =
      uploads.bytesPerSecond ? bytesText(static_cast<std::int64_t>(*uploads.bytesPerSecond)) + " a second, " : "";
  out.write(fmt::format("{}{}\n", rate, when));
  if (uploads.stuckFiles > 0) {
    out.write(stuckText(uploads.stuckFiles) + ".\n");
  }
  out.write("\n");
}

void printFile(const PendingUpload& file, Time now, const TextStyle& style, Output& out) {
  const std::string waited = file.pendingSince ? waitText(now - *file.pendingSince) : "-";
  out.write(fmt::format("{:>10}  {:>10}  {}  {}{}\n", bytesText(file.bytes), waited, displayText(file.filePath),
                        style.dim(displayText(file.folderName)), file.isStuck ? "  stuck" : ""));
}

ExitStatus pending(const PendingOptions& options, CommandContext& context) {
  const SyncHealthReport report =
      context.scan(options.folders.empty() ? context.openWatchlist()->folders() : namedFolders(options.folders));
  const UploadsStore::Look look = context.uploads()->note(report);
  if (look.failure) {
    // The answer holds all the same; only how long each file waits is not known next time.
    context.err.write(fmt::format("cirrovanectl: {}\n", displayText(look.failure->message)));
  }
  PendingUploads uploads = pendingUploads(look.record, pendingFilesOf(report), report.generatedAt);
  std::ranges::sort(uploads.files, [&](const PendingUpload& lhs, const PendingUpload& rhs) {
    return goesBefore(lhs, rhs, options.sort);
  });
  if (options.limit && *options.limit < std::ssize(uploads.files)) {
    uploads.files.resize(static_cast<std::size_t>(*options.limit));
  }
  if (context.wantsJSON) {
    writeJSONDocument(context.out, uploads);
    return ExitStatus::done;
  }
  const TextStyle style(context.out.isColoured());
  printHead(uploads, look.record, style, context.out);
  for (const PendingUpload& file : uploads.files) {
    printFile(file, uploads.generatedAt, style, context.out);
  }
  return ExitStatus::done;
}

}  // namespace

void addPendingCommand(CLI::App& app, ChosenCommand& chosen) {
  const auto options = std::make_shared<PendingOptions>();
  CLI::App& command =
      addCommand(app, "pending", "Show what is left to upload, how long it waits and when it will be done",
                 "Without a FOLDER, the watchlist is scanned. How long a file waits counts from\n"
                 "the moment at which Cirrovane first saw it pending.\n\n"
                 "Examples:\n"
                 "  cirrovanectl pending\n"
                 "  cirrovanectl pending --sort age --limit 10\n"
                 "  cirrovanectl pending --json | jq '.pendingBytes'");
  addArgument(command, {.name = "FOLDER", .help = "Folders to scan", .complaint = complaintAboutFolder},
              options->folders);
  addArgument(command,
              {.name = "--sort",
               .help = "Largest first, longest waiting first, or by path (default: size)",
               .choices = {"size", "age", "name"}},
              options->sort);
  addArgument(command,
              {.name = "--limit",
               .help = "Show at most N files (default: all)",
               .valueName = "N",
               .complaint = complaintAboutCount},
              options->limit);
  addJSONOption(command, chosen);
  onChosen(command, [&chosen, options] {
    chosen.run = [options](CommandContext& context) { return pending(*options, context); };
  });
}

}  // namespace cirrovane
