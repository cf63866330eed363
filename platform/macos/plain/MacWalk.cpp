#include "platform/macos/plain/MacWalk.h"

#include "base/Path.h"
#include "platform/macos/plain/FolderAlias.h"
#include "platform/macos/plain/PackageExtensions.h"
#include "platform/macos/plain/PackedEntry.h"
#include "platform/posix/BackgroundThread.h"
#include "platform/posix/walk/NamedItems.h"
#include "platform/posix/walk/ReadAheadWalk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

namespace cirrovane {
namespace {

/// Some 170 entries: what each of them costs is the cloud's answer, and so a flat folder is to reach every thread soon.
constexpr std::size_t kListedBytes = std::size_t{16} * 1024;
/// More than an entry with the longest name takes.
constexpr std::size_t kSingleEntryBytes = 2048;

/// An unhurried walk waits for few answers at a time.
constexpr std::size_t kUnhurriedThreads = 2;

/// What the readers of a walk have in common.
struct WalkParts {
  WalkParts(FolderAlias walked, WalkScope told, std::shared_ptr<const MacWalkCalls> asked)
      : folder(std::move(walked)),
        scope(told),
        calls(std::move(asked)),
        packages([this](std::string_view extension) { return calls->isPackageExtension(extension); }) {}

  FolderAlias folder;
  WalkScope scope;
  std::shared_ptr<const MacWalkCalls> calls;
  PackageExtensions packages;
};

class MacWalkReader final : public WalkReader {
 public:
  MacWalkReader(std::shared_ptr<WalkParts> parts, const MaterializationCalls& materialization)
      : parts_(std::move(parts)), guard_(materialization) {}

  /// Whether this thread may look at anything.
  bool isAllowed() const { return guard_.isInForce(); }

  Listing afterOpeningFailed(int error) const override { return whatIsMissed(error); }
  bool allowsListing(int /*descriptor*/) override { return true; }

  Listing readNames(int descriptor, WalkBatch& batch) override {
    toAsk_.clear();
    int count = 0;
    do {
      count = parts_->calls->listEntries(descriptor, batch.entries());
    } while (count < 0 && errno == EINTR);
    if (count <= 0) {
      return count == 0 ? Listing::ended : whatIsMissed(errno);
    }
    std::span<const char> rest = batch.entries();
    for (int number = 0; number < count; ++number) {
      const auto entry = takeEntry(rest);
      if (!entry) {
        return Listing::meaningless;
      }
      add(*entry, entry->name, batch);
    }
    return Listing::hasMore;
  }

  void readName(int descriptor, const std::string& name, WalkBatch& batch) override {
    std::array<char, kSingleEntryBytes> bytes{};
    int result = 0;
    do {
      result = parts_->calls->readEntry(descriptor, name.c_str(), bytes);
    } while (result < 0 && errno == EINTR);
    if (result < 0) {
      if (errno != ENOENT && errno != ENOTDIR && errno != ENAMETOOLONG) {
        batch.add(batch.keep(name));
      }
      return;
    }
    std::span<const char> rest = bytes;
    if (const auto entry = takeEntry(rest)) {
      // By the name that is stored, which may be written in another way than the one that was asked for.
      add(*entry, batch.keep(std::string(entry->name)), batch);
    } else {
      batch.add(batch.keep(name));
    }
  }

  void readValues(int /*descriptor*/, WalkBatch& batch) override {
    std::string path = parts_->folder.realPathOf(pathOf(batch.folder()));
    path += path.ends_with('/') ? "" : "/";
    const std::size_t prefixLength = path.size();
    const TextKeeper keep = [&](std::string text) { return batch.keep(std::move(text)); };
    const auto read = [&](ResourceValues& values) {
      return parts_->calls->readCloudState(
          path, values.isDirectory, parts_->scope,
          [&](const ResourceDictionary& dictionary) { addCloudState(dictionary, parts_->scope, keep, values); });
    };
    for (const std::size_t position : toAsk_) {
      Item& item = batch.itemsToFill()[position];
      path.resize(prefixLength);
      path += item.name;
      const bool isRead = item.values && read(*item.values);
      if (!isRead) {
        item.values.reset();
      }
    }
    toAsk_.clear();
  }

 private:
  /// The kernel's word for a folder whose list of names it would have to fetch is that of a lock that waits for itself.
  static Listing whatIsMissed(int error) {
    if (error == ENOENT) {
      return Listing::gone;
    }
    return error == EDEADLK ? Listing::isElsewhere : Listing::failed;
  }

  void add(const PackedEntry& entry, std::string_view name, WalkBatch& batch) {
    const bool isWhole = parts_->scope == WalkScope::everything;
    const bool isHidden = name.starts_with('.') || entry.isHidden;
    if (isHidden && !isWhole) {
      return;
    }
    const std::size_t position = batch.items().size();
    Item& item = batch.add(name);
    item.concealment = isHidden ? Concealment::hidden : Concealment::none;
    if (!entry.kind) {
      return;
    }
    ResourceValues& values = item.values.emplace();
    values.isDirectory = entry.kind == EntryKind::folder;
    if (values.isDirectory) {
      item.kind = ItemKind::folder;
      if (!isHidden && parts_->packages.isPackageName(name)) {
        item.concealment = Concealment::package;
      }
    } else {
      item.kind = entry.kind == EntryKind::regularFile ? ItemKind::file : ItemKind::other;
    }
    if (!isWhole) {
      values.contentModificationDate = entry.modified;
      values.fileSize = entry.size;
    }
    const bool isEntered = values.isDirectory && (isWhole || item.concealment == Concealment::none);
    if (isEntered) {
      batch.enter(item);
    }
    // What a folder itself is in the cloud is of no concern to a scan.
    if (item.kind != ItemKind::other && (isWhole || !isEntered)) {
      toAsk_.push_back(position);
    }
  }

  std::shared_ptr<WalkParts> parts_;
  NoMaterialization guard_;
  /// Places of the items that the cloud is still to be asked about: files and packages.
  std::vector<std::size_t> toAsk_;
};

class MacWalkSource final : public WalkSource {
 public:
  MacWalkSource(FolderAlias folder, const WalkRequest& request, std::shared_ptr<const MacWalkCalls> calls,
                const MaterializationCalls& materialization)
      : parts_(std::make_shared<WalkParts>(std::move(folder), request.scope, std::move(calls))),
        materialization_(materialization),
        isUnhurried_(request.isUnhurried) {}

  std::size_t entriesSize() const override { return kListedBytes; }

  std::unique_ptr<WalkReader> makeReader(ReadingThread thread) const override {
    if (isUnhurried_ && thread == ReadingThread::walks) {
      giveWay();
    }
    auto reader = std::make_unique<MacWalkReader>(parts_, materialization_);
    return reader->isAllowed() ? std::move(reader) : nullptr;
  }

 private:
  std::shared_ptr<WalkParts> parts_;
  const MaterializationCalls& materialization_;
  bool isUnhurried_;
};

std::unique_ptr<MacWalkSource> makeSource(const WalkRequest& request, const std::shared_ptr<const MacWalkCalls>& calls,
                                          const MaterializationCalls& materialization) {
  FolderAlias alias{request.folder, request.folder};
  // To follow a path goes through its folders, which may be elsewhere too.
  if (const NoMaterialization guard(materialization); guard.isInForce()) {
    alias.real = calls->withoutLinks(request.folder);
  }
  return std::make_unique<MacWalkSource>(std::move(alias), request, calls, materialization);
}

OpenCall openingBy(const std::shared_ptr<const MacWalkCalls>& calls) {
  return [calls](int directory, const char* name, int flags) { return calls->openFolder(directory, name, flags); };
}

}  // namespace

std::size_t macWalkThreadCount(unsigned processorCount) {
  return std::clamp<std::size_t>(processorCount, 4, 8);
}

std::unique_ptr<FolderWalk> startMacWalk(const WalkRequest& request, const std::shared_ptr<const MacWalkCalls>& calls,
                                         const MaterializationCalls& materialization, std::size_t threadCount) {
  if (!isAddressable(request.folder)) {
    return nullptr;
  }
  ReadAheadOptions options;
  options.threadCount = request.isUnhurried ? std::min(threadCount, kUnhurriedThreads) : threadCount;
  options.open = openingBy(calls);
  return std::make_unique<ReadAheadWalk>(request, makeSource(request, calls, materialization), options);
}

std::unique_ptr<ItemBatch> readMacItems(const std::string& folder, const std::vector<std::string>& names,
                                        const std::shared_ptr<const MacWalkCalls>& calls,
                                        const MaterializationCalls& materialization) {
  return isAddressable(folder)
             ? readNamedItems(folder, names, *makeSource({folder}, calls, materialization), openingBy(calls))
             : nullptr;
}

}  // namespace cirrovane
