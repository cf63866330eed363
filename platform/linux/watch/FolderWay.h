#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cirrovane {

/// A folder on the way to a watched one, and the name in it that the way goes on by.
struct WayStep {
  int watch = -1;
  /// Empty where the way ends.
  std::string name;
};

/// The way from the top of the file system to a folder, through every link, as far as it leads.
struct FolderWay {
  std::vector<WayStep> steps;
  /// Why a change of the way may go unnoticed; absent when none can.
  std::optional<std::string> weakness;
};

/// Watches the folder that is open on a descriptor: the system's watch, or -1 with errno set. The path is for a person,
/// and for a system that knows no folder by its descriptor.
using WatchCall = std::function<int(int descriptor, const std::string& path)>;

/// Follows the way to an absolute path and has each folder on it watched before the next name is looked up. So a way
/// that changes meanwhile is noticed.
FolderWay followWay(const std::string& path, const WatchCall& watch);

/// Why a folder is not watched, by the system's error.
std::string watchRefusal(int error, const std::string& path);

}  // namespace cirrovane
