#include "platform/linux/watch/FolderWay.h"

#include "base/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <deque>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <fmt/format.h>

namespace cirrovane {
namespace {

/// As many as the system itself follows.
constexpr int kMostLinks = 40;

using Names = std::deque<std::string>;

/// Puts the names of a path in front of those that are still to come.
void putInFront(Names& names, std::string_view path) {
  std::vector<std::string> parts;
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find('/'));
    if (!name.empty() && name != ".") {
      parts.emplace_back(name);
    }
    path.remove_prefix(name.size() == path.size() ? name.size() : name.size() + 1);
  }
  names.insert(names.begin(), parts.begin(), parts.end());
}

FileDescriptor openPlace(int folder, const std::string& name) {
  while (true) {
    // A mere place: nothing of it is read, which may be forbidden.
    FileDescriptor place(openat(folder, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (place.isOpen() || errno != EINTR) {
      return place;
    }
  }
}

/// Whether the error says that the name leads nowhere, not that we could not look.
bool leadsNowhere(int error) {
  return error == ENOENT || error == ENOTDIR || error == EACCES || error == ELOOP || error == ENAMETOOLONG;
}

std::string linkTarget(int link) {
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlinkat(link, "", target.data(), target.size());
  return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

}  // namespace

std::string watchRefusal(int error, const std::string& path) {
  if (error == ENOSPC) {
    return "The system watches no more folders (fs.inotify.max_user_watches).";
  }
  return fmt::format("The folder {} cannot be watched: {}.", path, std::generic_category().message(error));
}

FolderWay followWay(const std::string& path, const WatchCall& watch) {
  FolderWay way;
  if (!path.starts_with('/') || path.find('\0') != std::string::npos) {
    return way;
  }
  Names names;
  putInFront(names, path);
  FileDescriptor folder = openPlace(AT_FDCWD, "/");
  std::string place = "/";
  // Whether the folder above tells what becomes of this one. Nothing becomes of the top.
  bool isTold = true;
  int links = 0;
  while (true) {
    const int watched = folder.isOpen() ? watch(folder.get(), place) : -1;
    const int refusal = watched >= 0 ? 0 : errno;
    if (refusal != 0 && (refusal != EACCES || !isTold)) {
      way.weakness = watchRefusal(refusal, place);
      return way;
    }
    std::string name = names.empty() ? std::string() : names.front();
    if (watched >= 0) {
      way.steps.push_back({watched, name});
    }
    if (names.empty()) {
      return way;
    }
    names.pop_front();

    FileDescriptor next = openPlace(folder.get(), name);
    struct stat status {};
    if (!next.isOpen() || fstat(next.get(), &status) != 0) {
      // Without the right to look a name up, only the folder's own permissions can change what is found.
      if (!leadsNowhere(errno) || (refusal != 0 && errno != EACCES)) {
        way.weakness = watchRefusal(errno, place);
      }
      return way;
    }
    const bool isFolder = S_ISDIR(status.st_mode);
    if (!isFolder && refusal != 0) {
      way.weakness = watchRefusal(refusal, place);
      return way;
    }
    if (S_ISLNK(status.st_mode) && ++links <= kMostLinks) {
      const std::string target = linkTarget(next.get());
      if (target.starts_with('/')) {
        folder = openPlace(AT_FDCWD, "/");
        place = "/";
        isTold = true;
      }
      putInFront(names, target);
      continue;
    }
    if (!isFolder) {
      return way;
    }
    folder = std::move(next);
    isTold = refusal == 0 && name != "..";
    place.append(place.ends_with('/') ? "" : "/").append(name);
  }
}

}  // namespace cirrovane
