// Preloaded into the program under test: as long as there is a certain file, the system watches no more folders.

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/inotify.h>
#include <unistd.h>

extern "C" int inotify_add_watch(int watcher, const char* path, std::uint32_t mask) noexcept {
  const char* refusal = std::getenv("CIRROVANE_TEST_REFUSAL");
  if (refusal != nullptr && access(refusal, F_OK) == 0) {
    errno = ENOSPC;
    return -1;
  }
  using Call = int (*)(int, const char*, std::uint32_t);
  static const auto kReal = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "inotify_add_watch"));
  return kReal(watcher, path, mask);
}
