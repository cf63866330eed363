#pragma once

namespace cirrovane {

// The maker's pages on the web. The domain is one that is reserved for examples, until there is a real one.

/// Support and downloads, where the bundle names no page of its own.
inline constexpr const char* kDownloadsPage = "https://cirrovane.example.com/downloads";
inline constexpr const char* kReleaseNotesPage = "https://cirrovane.example.com/release-notes";
/// Where Homebrew is to be had.
inline constexpr const char* kHomebrewPage = "https://brew.sh";

}  // namespace cirrovane
