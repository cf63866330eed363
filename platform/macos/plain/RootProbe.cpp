#include "platform/macos/plain/RootProbe.h"

#include "base/FileDescriptor.h"
#include "platform/macos/plain/EmptyWalk.h"
#include "platform/macos/plain/RefusedWalk.h"

#include <cerrno>
#include <fcntl.h>

namespace cirrovane {

RootState probeRoot(const std::string& path, const OpenCall& open) {
  int value = -1;
  do {
    value = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  } while (value < 0 && errno == EINTR);
  if (value < 0) {
    return errno == EDEADLK ? RootState::dataless : RootState::refused;
  }
  const FileDescriptor closedAtTheEnd(value);
  return RootState::listable;
}

RootState probeRoot(const std::string& path) {
  return probeRoot(path, [](const char* name, int flags) { return ::open(name, flags); });
}

std::unique_ptr<FolderWalk> walkWithoutItems(RootState state) {
  switch (state) {
    case RootState::listable:
      return nullptr;
    case RootState::dataless:
      // What is only in the cloud has nothing that has yet to get there.
      return std::make_unique<EmptyWalk>();
    case RootState::refused:
      break;
  }
  return std::make_unique<RefusedWalk>();
}

}  // namespace cirrovane
