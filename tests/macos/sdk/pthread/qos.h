#pragma once

#pragma clang system_header

#if __has_include_next(<pthread/qos.h>)
#include_next <pthread/qos.h>
#else
#include "../declarations.h"

typedef enum : unsigned int { QOS_CLASS_UTILITY = 0x11 } qos_class_t;

SDK_EXTERN int pthread_set_qos_class_self_np(qos_class_t qos_class, int relative_priority);
#endif
