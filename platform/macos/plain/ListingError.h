#pragma once

#include "platform/macos/plain/FolderAlias.h"

#include <optional>
#include <string>

namespace cirrovane {

/// The ways in which an error of a folder's enumerator can name the item that it is about, as paths. Each may be
/// absent.
struct ListingError {
  /// Of the URL that the enumerator gives with the error, which may be nil although its header says otherwise.
  std::optional<std::string> givenPath;
  /// Of the URL in the error itself.
  std::optional<std::string> pathOfURL;
  /// Of the plain path in the error itself.
  std::optional<std::string> plainPath;
};

/// The item that the error is about; absent when it names none.
std::optional<std::string> itemOf(const ListingError& error);

/// Whether the folder that the walk began at may hold more than the walk tells: unless the error is about an item below
/// it. A refusal that was taken for a detail would make an unsafe Mac look safe.
bool endsListing(const ListingError& error, const FolderAlias& root);

}  // namespace cirrovane
