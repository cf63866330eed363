// Preloaded into the program under test: whoever waits for the machine to wake is told that it did, again and again,
// every tenth of a second.

#include <cerrno>
#include <dlfcn.h>
#include <sys/timerfd.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

int wakeNotice = -1;

}  // namespace

extern "C" int timerfd_settime(int descriptor, int flags, const itimerspec* time, itimerspec* former) noexcept {
  using Call = int (*)(int, int, const itimerspec*, itimerspec*);
  static const auto kReal = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "timerfd_settime"));
  if ((flags & TFD_TIMER_CANCEL_ON_SET) == 0) {
    return kReal(descriptor, flags, time, former);
  }
  wakeNotice = descriptor;
  itimerspec soon{};
  soon.it_value.tv_nsec = 100'000'000;
  return kReal(descriptor, 0, &soon, former);
}

extern "C" ssize_t read(int descriptor, void* buffer, size_t size) {
  using Call = ssize_t (*)(int, void*, size_t);
  static const auto kReal = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "read"));
  if (descriptor >= 0 && descriptor == wakeNotice) {
    errno = ECANCELED;
    return -1;
  }
  return kReal(descriptor, buffer, size);
}
