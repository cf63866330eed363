#include "platform/linux/watch/UntoldFileSystem.h"

#include <algorithm>
#include <array>

namespace cirrovane {
namespace {

struct Kind {
  std::int64_t type;
  std::string_view name;
};

// As statfs(2) lists them. Not all of them are in the system's headers.
constexpr std::array<Kind, 9> kKinds = {{
    {0x6969, "NFS"},
    {0xFF534D42, "CIFS"},
    {0xFE534D42, "SMB"},
    {0x517B, "SMB"},
    {0x65735546, "FUSE"},
    {0x01021997, "9P"},
    {0x00C36400, "Ceph"},
    {0x5346414F, "AFS"},
    {0x73757245, "Coda"},
}};

}  // namespace

std::optional<std::string_view> untoldFileSystem(std::int64_t type) {
  // Some processors widen the number with its sign.
  const std::int64_t bits = type & 0xFFFFFFFF;
  const auto* kind = std::ranges::find(kKinds, bits, &Kind::type);
  return kind != kKinds.end() ? std::optional(kind->name) : std::nullopt;
}

}  // namespace cirrovane
