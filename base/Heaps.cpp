#include "base/Heaps.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace cirrovane {

void limitHeaps() {
#ifdef __GLIBC__
  // Threads that come and go with each scan would leave a heap of their own behind, and a large report holes in it.
  mallopt(M_ARENA_MAX, 2);
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
}

}  // namespace cirrovane
