// Preloaded into the program under test: each reading of an attribute waits until somebody opens the gate, a FIFO, for
// writing. So a scan takes exactly as long as a test wants it to.

#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

extern "C" ssize_t lgetxattr(const char* path, const char* name, void* value, size_t size) noexcept {
  if (const char* gate = std::getenv("CIRROVANE_TEST_GATE")) {
    close(open(gate, O_RDONLY | O_CLOEXEC));
  }
  using Call = ssize_t (*)(const char*, const char*, void*, size_t);
  static const auto kReal = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "lgetxattr"));
  return kReal(path, name, value, size);
}
