#pragma clang system_header

#include_next <sys/resource.h>

#ifndef IOPOL_SCOPE_PROCESS
#include "../declarations.h"

#define IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES 3
#define IOPOL_SCOPE_PROCESS 0
#define IOPOL_SCOPE_THREAD 1
#define IOPOL_MATERIALIZE_DATALESS_FILES_OFF 1

SDK_EXTERN int getiopolicy_np(int iotype, int scope);
SDK_EXTERN int setiopolicy_np(int iotype, int scope, int policy);
#endif
