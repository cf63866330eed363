#include "platform/macos/SystemListing.h"

#include "platform/macos/plain/PackedEntry.h"

#include <sys/attr.h>
#include <sys/stat.h>
#include <sys/vnode.h>
#include <unistd.h>

namespace cirrovane {
namespace {

static_assert(kReturnedAttributes == ATTR_CMN_RETURNED_ATTRS && kErrorAttribute == ATTR_CMN_ERROR &&
              kNameAttribute == ATTR_CMN_NAME && kTypeAttribute == ATTR_CMN_OBJTYPE &&
              kModifiedAttribute == ATTR_CMN_MODTIME && kFlagsAttribute == ATTR_CMN_FLAGS &&
              kSizeAttribute == ATTR_FILE_DATALENGTH);
static_assert(kRegularFileType == VREG && kFolderType == VDIR && kHiddenFlag == UF_HIDDEN);

attrlist askingFor(attrgroup_t more) {
  attrlist asked{};
  asked.bitmapcount = ATTR_BIT_MAP_COUNT;
  asked.commonattr =
      kReturnedAttributes | kNameAttribute | kTypeAttribute | kModifiedAttribute | kFlagsAttribute | more;
  asked.fileattr = kSizeAttribute;
  return asked;
}

}  // namespace

int listSystemEntries(int descriptor, std::span<char> target) {
  attrlist asked = askingFor(kErrorAttribute);
  return getattrlistbulk(descriptor, &asked, target.data(), target.size(), 0);
}

int readSystemEntry(int descriptor, const char* name, std::span<char> target) {
  attrlist asked = askingFor(0);
  return getattrlistat(descriptor, name, &asked, target.data(), target.size(), FSOPT_NOFOLLOW);
}

}  // namespace cirrovane
