// Preloaded into the program under test: each reading of an attribute waits until somebody opens the gate, a FIFO, for
// writing; only those of one item, where there is a name for it. So a scan takes exactly as long as a test wants it to.

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

extern "C" ssize_t lgetxattr(const char* path, const char* name, void* value, size_t size) noexcept {
  const char* item = std::getenv("CIRROVANE_TEST_GATED_ITEM");
  const char* gate = std::getenv("CIRROVANE_TEST_GATE");
  if (gate != nullptr && (item == nullptr || std::strcmp(path, item) == 0)) {
    close(open(gate, O_RDONLY | O_CLOEXEC));
  }
  using Call = ssize_t (*)(const char*, const char*, void*, size_t);
  static const auto kReal = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "lgetxattr"));
  return kReal(path, name, value, size);
}
