#include "platform/macos/StandardUpdater.h"

namespace cirrovane {

std::unique_ptr<Updater> makeStandardUpdater() {
  return nullptr;
}

}  // namespace cirrovane
