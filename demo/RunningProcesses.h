#pragma once

#include <filesystem>
#include <string>

namespace cirrovane::demo {

/// Writes the list of the processes that run on a new demo Mac.
void writeSampleProcesses(const std::filesystem::path& root);

/// Adds a process to the list of the Mac in a folder; false when it was there.
bool startProcess(const std::filesystem::path& root, const std::string& name);

/// Takes all processes of a name off the list of the Mac in a folder; false when there was none.
bool stopProcess(const std::filesystem::path& root, const std::string& name);

}  // namespace cirrovane::demo
