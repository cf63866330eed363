#pragma once

#include <span>

namespace cirrovane {

// The kernel's calls that tell of a folder's entries: name, kind, date and flags of each, packed.

/// Writes the next entries from the descriptor's position on: how many, 0 at the end, -1 with errno set when they
/// cannot be had.
int listSystemEntries(int descriptor, std::span<char> target);

/// Writes the entry of that name, a link as what it is: 0, or -1 with errno set.
int readSystemEntry(int descriptor, const char* name, std::span<char> target);

}  // namespace cirrovane
