#include "demo/Network.h"

#include "demo/AtomicFile.h"

namespace cirrovane::demo {

void setNetwork(const std::filesystem::path& root, bool isOn) {
  writeAtomically(root / "network.txt", isOn ? "on\n" : "off\n", kPublicFile);
}

}  // namespace cirrovane::demo
