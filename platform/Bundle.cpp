#include "platform/Bundle.h"

namespace cirrovane {

bool isApplicationBundle(const Bundle& bundle) {
  std::string location = bundle.location();
  while (location.ends_with('/')) {
    location.pop_back();
  }
  const std::string name = location.substr(location.rfind('/') + 1);
  // A name that begins with its only dot is hidden, and has no extension.
  return name.ends_with(".app") && name != ".app";
}

}  // namespace cirrovane
