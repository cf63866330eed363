#pragma once

#include "platform/posix/walk/WalkReader.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace cirrovane {

/// The system's call that writes the next entries of a folder, as getdents64 has it. A value, so that a test can stand
/// in for a disk that fails. Called by several threads at once.
using ListingCall = std::function<ssize_t(int descriptor, void* target, std::size_t size)>;

/// Reads entries as the kernel lists them, and values out of their attributes.
class LinuxWalkReader final : public WalkReader {
 public:
  /// `hasWorkingDirectory`: whether the calling thread may change its working directory without the others' noticing.
  LinuxWalkReader(ListingCall list, bool hasWorkingDirectory, WalkScope scope = WalkScope::shown);

  Listing afterOpeningFailed(int /*error*/) const override { return Listing::failed; }
  /// Whether the folder's own attribute leaves its listing free.
  bool allowsListing(int descriptor) override;
  Listing readNames(int descriptor, WalkBatch& batch) override;
  void readName(int descriptor, const std::string& name, WalkBatch& batch) override;
  void readValues(int descriptor, WalkBatch& batch) override;

 private:
  void addEntry(int descriptor, std::string_view name, unsigned char type, WalkBatch& batch) const;
  void readItem(int descriptor, Item& item, std::string& attributePath, std::size_t prefixLength, WalkBatch& batch);

  ListingCall list_;
  bool hasWorkingDirectory_;
  WalkScope scope_;
  std::vector<char> attribute_;
};

}  // namespace cirrovane
