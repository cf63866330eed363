#include "platform/posix/BackgroundThread.h"

#ifdef __APPLE__
#include <pthread/qos.h>
#else
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace cirrovane {

#ifdef __APPLE__

void giveWay() {
  static_cast<void>(pthread_set_qos_class_self_np(QOS_CLASS_BACKGROUND, 0));
}

#else

namespace {

// The kernel's numbers, for which the library has no header.
constexpr int kWhoIsThread = 1;
constexpr int kIdleClass = 3 << 13;

}  // namespace

void giveWay() {
  const sched_param none{};
  static_cast<void>(sched_setscheduler(0, SCHED_IDLE, &none));
  static_cast<void>(syscall(SYS_ioprio_set, kWhoIsThread, 0, kIdleClass));
}

#endif

}  // namespace cirrovane
