#pragma once

#include "base/Result.h"

#include <map>
#include <optional>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace cirrovane {

/// A folder that stands for a Mac's disk, or "/" for the machine that the program runs on. The facts of the Mac that it
/// stands for are in its machine.json.
class MacRoot {
 public:
  /// The root at an absolute path. Fails when that is no folder, or its machine.json is not a description of a machine.
  static Result<MacRoot> open(std::string path);

  /// Absolute, without a trailing slash unless it is "/".
  const std::string& path() const { return path_; }

  /// Whether there was a machine.json when the root was opened. Without one the facts are those of the machine that the
  /// program runs on.
  bool isDescribed() const { return isDescribed_; }

  /// Whether the user's own folders and the commands, too, are those of the machine that the program runs on.
  bool isHost() const { return path_ == "/" && !isDescribed_; }

  /// The machine.json as it is now; an empty object when there was none, or when it has gone or become unreadable
  /// since.
  nlohmann::json facts() const;

  /// The environment that programs on this Mac see; absent when that is our own.
  std::optional<std::map<std::string, std::string>> environment() const;

  /// What the described user says to notifications; absent when that is not described.
  std::optional<std::string> notificationAuthorization() const;

  /// What the described user says to a program that wants to be opened at login; absent when that is not described.
  std::optional<std::string> loginItemApproval() const;

  /// The user's home folder as a real path, without a trailing slash.
  std::string homeDirectory() const;

  /// Where an absolute path of the Mac's disk really is. A path that is inside of the root already stays as it is, and
  /// so does one that is not absolute.
  std::string realPath(const std::string& path) const;

 private:
  explicit MacRoot(std::string path);

  std::string factsPath() const;
  std::optional<std::string> textFact(const char* key) const;

  std::string path_;
  bool isDescribed_;
};

}  // namespace cirrovane
