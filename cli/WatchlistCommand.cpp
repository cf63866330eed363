#include "base/DisplayText.h"
#include "base/UTF8.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/FolderArgument.h"
#include "cli/TextStyle.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

namespace cirrovane {
namespace {

using Arguments = std::vector<std::string>;

void printFolders(const std::vector<WatchFolder>& folders, CommandContext& context) {
  if (context.wantsJSON) {
    writeJSONDocument(context.out, folders);
    return;
  }
  if (folders.empty()) {
    context.out.write("No folder is watched. Add one: cirrovanectl watchlist add FOLDER\n");
    return;
  }
  const TextStyle style(context.out.isColoured());
  for (const WatchFolder& folder : folders) {
    context.out.write(fmt::format("{}\n  {}\n  {}\n", style.bold(displayText(folder.name)), displayText(folder.path),
                                  style.dim(folder.id.text())));
  }
}

ExitStatus finish(const WatchlistStore& store, CommandContext& context) {
  if (const std::optional<Failure>& failure = store.saveFailure()) {
    return reportFailure(context, "The watchlist could not be saved: " + failure->message);
  }
  printFolders(store.folders(), context);
  return ExitStatus::done;
}

ExitStatus listFolders(CommandContext& context) {
  printFolders(context.openWatchlist()->folders(), context);
  return ExitStatus::done;
}

ExitStatus add(const Arguments& arguments, CommandContext& context) {
  for (const std::string& argument : arguments) {
    // The file could only hold another name, under which the folder would never be found again.
    if (!isValidUTF8(absolutePath(argument))) {
      return reportFailure(context, fmt::format("{} is not UTF-8, so it cannot be watched.", argument));
    }
  }
  const auto store = context.openWatchlist();
  for (const std::string& argument : arguments) {
    const std::string path = absolutePath(argument);
    // Watching a folder that is still to come is allowed: until then, no verdict is "safe".
    if (!context.machine.fileSystem->exists(path)) {
      context.err.write(
          fmt::format("cirrovanectl: {} does not exist; it is watched all the same.\n", displayText(path)));
    }
    store->addFolder(path);
    if (store->saveFailure()) {
      break;
    }
  }
  return finish(*store, context);
}

/// The folder that an argument means: by its identifier, by its path as stored, or by its path as an argument.
std::optional<UUID> folderMeantBy(const std::string& argument, const std::vector<WatchFolder>& folders) {
  const std::optional<UUID> id = UUID::fromText(argument);
  const std::string path = absolutePath(argument);
  const auto found = std::ranges::find_if(folders, [&](const WatchFolder& folder) {
    return folder.id == id || folder.path == argument || folder.path == path;
  });
  return found == folders.end() ? std::nullopt : std::optional(found->id);
}

ExitStatus removeFolders(const Arguments& arguments, CommandContext& context) {
  const auto store = context.openWatchlist();
  std::vector<UUID> ids;
  for (const std::string& argument : arguments) {
    const std::optional<UUID> id = folderMeantBy(argument, store->folders());
    if (!id) {
      return reportFailure(context, fmt::format("{} is not on the watchlist.", argument));
    }
    ids.push_back(*id);
  }
  for (const UUID& id : ids) {
    store->removeFolder(id);
    if (store->saveFailure()) {
      break;
    }
  }
  return finish(*store, context);
}

}  // namespace

void addWatchlistCommand(CLI::App& app, ChosenCommand& chosen) {
  CLI::App& command = addCommand(app, "watchlist", "Show and change the watched folders",
                                 "Examples:\n"
                                 "  cirrovanectl watchlist\n"
                                 "  cirrovanectl watchlist add ~/Documents/Clients\n"
                                 "  cirrovanectl watchlist remove ~/Documents/Clients");
  takeVerbs(command);
  addJSONOption(command, chosen);

  CLI::App& listVerb = addCommand(command, "list", "Show the watched folders (what watchlist alone does)");
  addJSONOption(listVerb, chosen);

  const auto added = std::make_shared<Arguments>();
  CLI::App& addVerb = addCommand(command, "add", "Watch folders");
  addArgument(addVerb,
              {.name = "FOLDER", .help = "Folders to watch", .isRequired = true, .complaint = complaintAboutFolder},
              *added);
  addJSONOption(addVerb, chosen);

  const auto removed = std::make_shared<Arguments>();
  CLI::App& removeVerb = addCommand(command, "remove", "Watch folders no longer");
  addArgument(removeVerb,
              {.name = "FOLDER-or-ID",
               .help = "Watched folders, or their identifiers",
               .isRequired = true,
               .complaint = complaintAboutFolder},
              *removed);
  addJSONOption(removeVerb, chosen);

  onChosen(command, [&chosen, &addVerb, added, &removeVerb, removed] {
    if (isChosen(addVerb)) {
      chosen.run = [added](CommandContext& context) { return add(*added, context); };
    } else if (isChosen(removeVerb)) {
      chosen.run = [removed](CommandContext& context) { return removeFolders(*removed, context); };
    } else {
      chosen.run = listFolders;
    }
  });
}

}  // namespace cirrovane
