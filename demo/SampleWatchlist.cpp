#include "demo/SampleWatchlist.h"

#include "demo/SampleFiles.h"

namespace cirrovane::demo {
namespace {

constexpr const char* kMissing = "Travel Documents";

}  // namespace

Watchlist sampleWatchlist(const std::filesystem::path& home) {
  const std::filesystem::path drive = home / kDriveFolder;
  return {
      {"7C1E0B52-3D9A-4F61-9E0C-5A2B8D4471F3", "Client Work", drive / "Client Work"},
      {"B04F9D16-88E2-4C37-A5D1-0E6C93F27A48", "Invoices", drive / "Invoices"},
      {"25A8C3E7-61B4-4D0F-8F92-C7D05E1B3A96", "School", drive / "School"},
      {"E9D37F40-0A5C-4B8E-B316-94F1A2C86D05", "Scratch", home / "Desktop/Scratch"},
      {"418B6EAC-F2D7-49C5-96A3-7D3E0FB8512C", kMissing, missingFolder(home)},
  };
}

std::filesystem::path missingFolder(const std::filesystem::path& home) {
  return home / kDriveFolder / kMissing;
}

}  // namespace cirrovane::demo
