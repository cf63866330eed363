#include "platform/Bundle.h"

#include "base/Path.h"

namespace cirrovane {

bool isApplicationBundle(const Bundle& bundle) {
  const std::string location = bundle.location();
  const std::string_view name = lastPathComponent(withoutTrailingSlash(location));
  // A name that begins with its only dot is hidden, and has no extension.
  return name.ends_with(".app") && name != ".app";
}

}  // namespace cirrovane
