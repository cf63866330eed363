#pragma once

#pragma clang system_header

#include "../declarations.h"

typedef uint32_t attrgroup_t;

struct attrlist {
  unsigned short bitmapcount;
  uint16_t reserved;
  attrgroup_t commonattr;
  attrgroup_t volattr;
  attrgroup_t dirattr;
  attrgroup_t fileattr;
  attrgroup_t forkattr;
};

#define ATTR_BIT_MAP_COUNT 5

#define ATTR_CMN_NAME 0x00000001
#define ATTR_CMN_OBJTYPE 0x00000008
#define ATTR_CMN_MODTIME 0x00000400
#define ATTR_CMN_FLAGS 0x00040000
#define ATTR_CMN_ERROR 0x20000000
#define ATTR_CMN_RETURNED_ATTRS 0x80000000
#define ATTR_FILE_DATALENGTH 0x00000200

#define FSOPT_NOFOLLOW 0x00000001
