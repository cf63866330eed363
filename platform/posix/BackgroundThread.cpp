#include "platform/posix/BackgroundThread.h"

#ifdef __APPLE__
#include <pthread/qos.h>
#else
#include <algorithm>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace cirrovane {

// Low, but not the lowest that there is: somebody may wait for the thread, on a machine that others keep busy for
// hours.

#ifdef __APPLE__

void giveWay() {
  static_cast<void>(pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0));
}

#else

namespace {

constexpr int kNicer = 10;
constexpr int kNicest = 19;
// The kernel's numbers, for which the library has no header.
constexpr int kWhoIsThread = 1;
constexpr int kLastOfTheUsualClass = (2 << 13) | 7;

}  // namespace

void giveWay() {
  const sched_param none{};
  static_cast<void>(sched_setscheduler(0, SCHED_BATCH, &none));
  // Here, too, 0 is the calling thread.
  static_cast<void>(setpriority(PRIO_PROCESS, 0, std::min(getpriority(PRIO_PROCESS, 0) + kNicer, kNicest)));
  static_cast<void>(syscall(SYS_ioprio_set, kWhoIsThread, 0, kLastOfTheUsualClass));
}

#endif

}  // namespace cirrovane
