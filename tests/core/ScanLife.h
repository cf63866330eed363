#pragma once

#include "core/ScanIndex.h"
#include "tests/support/FakeTree.h"
#include "tests/support/ManualClock.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace cirrovane::test {

/// Where a life takes place.
struct LifePlace {
  /// What is done is done to this tree, and by its mirror wherever else.
  FakeTree& tree;
  /// What is scanned: the tree itself or its mirror.
  const FileSystem& fileSystem;
  /// Tells what changed in what is scanned.
  ChangeSource& changes;
  /// The folder of the tree in which everything happens. It is there, and it stays.
  std::string home;
  /// Whether only the tree knows how to do without means, and to break off.
  bool isReal = false;
  /// The folders watched by now, where that can be asked.
  std::function<std::set<std::string>()> watched;
};

/// Random things that happen to a few watched folders, while an index follows them by what it is told. Whenever it was
/// told everything, it has to say what a full scan says. All follows from the seed.
class ScanLife {
 public:
  ScanLife(const LifePlace& place, std::uint32_t seed);

  /// Lives on for so many steps; false after a failure, which it has added to the running test.
  bool live(std::size_t steps);

  /// How often each kind of thing happened, to show that a run tried what it claims to try.
  struct Tally {
    std::size_t steps = 0;
    std::size_t settled = 0;
    std::size_t safe = 0;
    std::size_t glances = 0;
    std::size_t glancesThatBlock = 0;
    std::size_t lateStalls = 0;
    std::size_t losses = 0;
    std::size_t blocked = 0;
    std::size_t unchanged = 0;
  };
  const Tally& tally() const { return tally_; }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }
  bool oneIn(std::size_t chances) { return below(chances) == 0; }
  template <class Range>
  const auto& pick(const Range& range) {
    return range[below(std::size(range))];
  }
  std::string pick(const std::vector<std::string>& texts, const std::string& otherwise) {
    return texts.empty() ? otherwise : pick(texts);
  }

  std::string anyName();
  std::string anyFolder();
  std::string anyPath();
  std::string newPath() { return anyFolder() + "/" + anyName(); }
  std::optional<Time> anyDate();
  std::optional<FakeValues> anyValues();
  /// Other values for a file, which mostly differ in one thing.
  std::optional<FakeValues> otherValues(const std::string& path);

  void grow(const std::string& folder, std::size_t depth);
  void happen();
  void changeUntold();
  void watchAnew();
  ScanIndex scan();
  void setClock();

  void takeChanges();
  void deliver(std::vector<FolderChange> changes);
  void apply(const UpdateResult& result);
  void deliverSome();
  void settle();
  bool agrees();
  bool knowsTheNextStall();
  bool fail(const std::string& what);

  LifePlace place_;
  std::uint32_t seed_;
  std::mt19937 random_;
  ManualClock clock_;
  std::vector<WatchFolder> folders_;
  std::optional<ScanIndex> index_;
  /// Told, and not handed to the index yet.
  std::vector<FolderChange> pending_;
  /// Told at any time.
  std::vector<FolderChange> former_;
  std::vector<std::string> lately_;
  bool hasFailed_ = false;
  Tally tally_;
};

}  // namespace cirrovane::test
