#pragma once

#include <filesystem>

namespace cirrovane::demo {

/// The application's memory of how many files folders held when they were safe.
std::filesystem::path fileCountsPath(const std::filesystem::path& home);

/// Makes it remember that a folder of iCloud Drive held far more files a week ago than it does, beside what it holds.
void writeSampleFileCounts(const std::filesystem::path& path, const std::filesystem::path& drive);

/// Takes that back. A memory that makes no sense is left alone.
void forgetSampleFileCounts(const std::filesystem::path& path);

}  // namespace cirrovane::demo
