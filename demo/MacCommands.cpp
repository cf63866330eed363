#include "demo/MacCommands.h"

#include "demo/AtomicFile.h"
#include "demo/CommandScripts.h"

#include <sys/types.h>

namespace cirrovane::demo {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kProgram = 0755;

}  // namespace

void placeCommands(const fs::path& root) {
  for (const CommandScript& script : commandScripts()) {
    const fs::path path = root / script.path;
    fs::create_directories(path.parent_path());
    writeAtomically(path, script.text, kProgram);
  }
  const fs::path homebrew = root / "opt/homebrew";
  for (const char* const tool : {"osx-cpu-temp", "jq"}) {
    fs::copy_file(homebrew / "Library/tool", homebrew / "bin" / tool);
  }
}

}  // namespace cirrovane::demo
