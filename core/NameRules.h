#pragma once

#include "platform/FileSystem.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

// What names say about items: hints, since the system publishes no such list. docs/coverage.md has each one's source.

namespace cirrovane {

/// A name that iCloud leaves out: a star at either end stands for any text. Letters count alike in either case.
struct ExclusionRule {
  std::string_view pattern;
  /// Whether it is about folders alone.
  bool isForFolders = false;
};

/// Where several apply, the first counts.
inline constexpr std::array<ExclusionRule, 18> kExclusionRules = {{
    {"*.nosync"},
    {"*.nosync.*"},
    {"*.photoslibrary"},
    {"*.photolibrary"},
    {"*.migratedphotolibrary"},
    {"*.aplibrary"},
    {"*.migratedaplibrary"},
    {"*.migratedaperturelibrary"},
    {"*.weakpkg*"},
    {"(A Document Being Saved*"},
    {"*.tmp"},
    {"tmp", true},
    {"~$*"},
    {"*~"},
    {".ubd"},
    {"desktop.ini"},
    {"$RECYCLE.BIN"},
    {"Microsoft User Data"},
}};

/// The place in the table of the first rule that leaves an item of this name out; absent when none does.
std::optional<std::size_t> exclusionRuleFor(std::string_view name, ItemKind kind);

/// Whether a file of this name is no work of anybody's: what programs leave beside the files that they have open, and
/// what the system itself keeps.
bool isPassingName(std::string_view name);

/// What the user has thrown away lies in a folder of this name.
inline constexpr std::string_view kTrashName = ".Trash";

}  // namespace cirrovane
