#include "platform/macos/plain/ListingError.h"

namespace cirrovane {

std::optional<std::string> itemOf(const ListingError& error) {
  for (const std::optional<std::string>* path : {&error.givenPath, &error.pathOfURL, &error.plainPath}) {
    if (*path && !(*path)->empty()) {
      return *path;
    }
  }
  return std::nullopt;
}

bool endsListing(const ListingError& error, const FolderAlias& root) {
  const std::optional<std::string> item = itemOf(error);
  return !item || !root.isBelow(*item);
}

}  // namespace cirrovane
