#include "platform/linux/walk/Packages.h"

#include "base/ASCII.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

// What a Mac's launch services know as packages: applications and plug-ins, documents of Apple's and common
// third-party programs, libraries and disk bundles.
constexpr std::array<std::string_view, 44> kPackageExtensions = {
    "app",           "appex",
    "action",        "aplibrary",
    "band",          "bundle",
    "cdmg",          "component",
    "dSYM",          "docset",
    "download",      "fcpbundle",
    "framework",     "graffle",
    "imovielibrary", "imovieproject",
    "key",           "kext",
    "logicx",        "mdimporter",
    "menu",          "migratedphotolibrary",
    "mpkg",          "musiclibrary",
    "numbers",       "pages",
    "photolibrary",  "photoslibrary",
    "pkg",           "playground",
    "plugin",        "prefPane",
    "qlgenerator",   "rtfd",
    "saver",         "scptd",
    "sparsebundle",  "theater",
    "tvlibrary",     "webarchive",
    "workflow",      "xcarchive",
    "xcodeproj",     "xcworkspace",
};

}  // namespace

bool isPackageName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  // A name that only consists of an ending is hidden, not a package.
  if (dot == std::string_view::npos || dot == 0) {
    return false;
  }
  const std::string_view extension = name.substr(dot + 1);
  return std::ranges::any_of(kPackageExtensions,
                             [&](std::string_view known) { return equalIgnoringCase(extension, known); });
}

}  // namespace cirrovane
