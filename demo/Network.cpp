#include "demo/Network.h"

#include "demo/AtomicFile.h"

#include <sys/types.h>

namespace cirrovane::demo {
namespace {

constexpr mode_t kPublicFile = 0666;

}  // namespace

void setNetwork(const std::filesystem::path& root, bool isOn) {
  writeAtomically(root / "network.txt", isOn ? "on\n" : "off\n", kPublicFile);
}

}  // namespace cirrovane::demo
