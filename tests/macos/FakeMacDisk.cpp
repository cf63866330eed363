#include "tests/macos/FakeMacDisk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace cirrovane::test {
namespace {

constexpr int kUsualPolicy = 2;

thread_local int threadPolicy = kUsualPolicy;

int fail(int error) {
  errno = error;
  return -1;
}

std::string packedNode(const FakeMacNode& node) {
  return packed({.name = node.name,
                 .type = node.type,
                 .error = node.entryError,
                 .flags = node.flags,
                 .modifiedSeconds = node.modifiedSeconds});
}

class FakeResources final : public ResourceDictionary {
 public:
  explicit FakeResources(const FakeMacNode& node) : node_(node) {}

  std::optional<bool> boolean(ResourceKey key) const override {
    switch (key) {
      case ResourceKey::isUbiquitousItem:
        return node_.isUbiquitous;
      case ResourceKey::ubiquitousItemIsUploaded:
        return node_.isUploaded;
      default:
        return std::nullopt;
    }
  }
  std::optional<DownloadingStatus> downloadingStatus() const override { return node_.downloadingStatus; }
  std::optional<std::string> errorText(ResourceKey key) const override {
    return key == ResourceKey::ubiquitousItemUploadingError ? node_.uploadingError : std::nullopt;
  }

 private:
  const FakeMacNode& node_;
};

}  // namespace

FakeMacNode& FakeMacNode::add(const std::string& childName, std::uint32_t childType) {
  FakeMacNode& child = *children.emplace_back(std::make_unique<FakeMacNode>());
  child.name = childName;
  child.type = childType;
  byName.emplace(childName, &child);
  return child;
}

FakeMacNode* FakeMacNode::find(std::string_view childName) {
  const auto found = byName.find(childName);
  return found != byName.end() ? found->second : nullptr;
}

std::optional<int> FakeMaterialization::policy(PolicyScope /*scope*/) const {
  return threadPolicy;
}

bool FakeMaterialization::setPolicy(PolicyScope /*scope*/, int policy) const {
  if (refuses_) {
    return false;
  }
  threadPolicy = policy;
  return true;
}

bool FakeMaterialization::isOff() {
  return threadPolicy == kMaterializationOff;
}

void FakeMacDisk::note() const {
  ++calls_;
  if (!FakeMaterialization::isOff()) {
    ++unguarded_;
  }
}

FakeMacNode* FakeMacDisk::at(std::string_view path) const {
  if (!path.starts_with(rootPath_)) {
    return nullptr;
  }
  path.remove_prefix(rootPath_.size());
  FakeMacNode* node = &root_;
  while (node != nullptr && !path.empty()) {
    path.remove_prefix(1);
    const std::string_view name = path.substr(0, path.find('/'));
    node = node->find(name);
    path.remove_prefix(name.size());
  }
  return node;
}

FakeMacNode* FakeMacDisk::nodeNamed(int directory, const char* name) const {
  if (directory == AT_FDCWD) {
    return links_.contains(name) ? &root_ : at(name);
  }
  return open_.at(directory).node->find(name);
}

int FakeMacDisk::openFolder(int directory, const char* name, int flags) const {
  note();
  const std::lock_guard lock(mutex_);
  FakeMacNode* node = nodeNamed(directory, name);
  if (node == nullptr) {
    return fail(ENOENT);
  }
  if (node->openError != 0) {
    return fail(node->openError);
  }
  if (node->type != kFolderType) {
    return fail(node->type == kLinkType && (flags & O_NOFOLLOW) != 0 ? ELOOP : ENOTDIR);
  }
  // Any folder of this machine: only its number counts.
  const int descriptor = ::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  open_[descriptor] = {node, 0};
  return descriptor;
}

int FakeMacDisk::listEntries(int descriptor, std::span<char> target) const {
  note();
  const std::lock_guard lock(mutex_);
  OpenFolder& folder = open_.at(descriptor);
  const FakeMacNode& node = *folder.node;
  if (node.isGarbled) {
    std::memset(target.data(), 0, target.size());
    return 1;
  }
  const std::size_t end = node.listError != 0 ? node.entriesBeforeError : node.children.size();
  if (folder.position >= end) {
    return node.listError != 0 ? fail(node.listError) : 0;
  }
  std::size_t used = 0;
  std::size_t count = 0;
  for (; folder.position < end && count < mostEntries_; ++folder.position, ++count) {
    const std::string entry = packedNode(*node.children[folder.position]);
    if (target.size() - used < entry.size()) {
      break;
    }
    entry.copy(target.data() + used, entry.size());
    used += entry.size();
  }
  return static_cast<int>(count);
}

int FakeMacDisk::readEntry(int descriptor, const char* name, std::span<char> target) const {
  note();
  const std::lock_guard lock(mutex_);
  const FakeMacNode* node = open_.at(descriptor).node->find(name);
  if (node == nullptr) {
    return fail(ENOENT);
  }
  if (node->entryError != 0) {
    return fail(static_cast<int>(node->entryError));
  }
  const std::string entry = packedNode(*node);
  entry.copy(target.data(), target.size());
  return 0;
}

std::string FakeMacDisk::withoutLinks(const std::string& path) const {
  note();
  return links_.contains(path) ? rootPath_ : path;
}

bool FakeMacDisk::isPackageExtension(std::string_view extension) const {
  note();
  const std::lock_guard lock(mutex_);
  extensionsAsked_.emplace_back(extension);
  return packages_.contains(extension);
}

bool FakeMacDisk::readCloudState(const std::string& path, bool isFolder, WalkScope /*scope*/,
                                 const ResourceTaker& take) const {
  note();
  const FakeMacNode* node = nullptr;
  {
    const std::lock_guard lock(mutex_);
    pathsAsked_.push_back(path);
    node = at(path);
  }
  if (node == nullptr || !node->hasURL || isFolder != (node->type == kFolderType)) {
    return false;
  }
  take(FakeResources(*node));
  return true;
}

std::vector<std::string> FakeMacDisk::extensionsAsked() const {
  const std::lock_guard lock(mutex_);
  return extensionsAsked_;
}

std::vector<std::string> FakeMacDisk::pathsAsked() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> paths = pathsAsked_;
  std::ranges::sort(paths);
  return paths;
}

}  // namespace cirrovane::test
