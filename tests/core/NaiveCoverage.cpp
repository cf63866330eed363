#include "tests/core/NaiveCoverage.h"

#include <algorithm>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace cirrovane::test {
namespace {

/// What one sees of the disk from one watched folder.
struct View {
  struct Found {
    GapKind kind = GapKind::filesLost;
    std::string rule;
    bool isFolder = false;
    bool isStandIn = true;
  };

  std::string path;
  std::string name;
  bool isExamined = false;
  std::map<std::string, Found> gaps;
  /// 'h' for hidden, 'i' for what packages hold, 'p' for packages.
  std::map<std::string, char> seen;
  std::int64_t files = 0;
};

bool liesBelow(const std::string& path, const std::string& folder) {
  return path.starts_with(folder + "/");
}

bool fits(const std::string& name, const std::string& expression) {
  return std::regex_match(name, std::regex(expression, std::regex::icase));
}

bool isLeftAside(const std::string& name) {
  static const std::regex passing(R"(~\$[^]*|\.~[^]*|[^]*\.tmp|\.DS_Store|\.localized|\._[^]*|Icon\r|\.[^]*\.icloud)");
  return std::regex_match(name, passing);
}

/// Those that the trees hold, in the order in which they count.
std::string ruleFor(const std::string& name, bool isFolder) {
  static const std::vector<std::pair<std::string, std::string>> rules = {
      {"*.nosync", R"([^]*\.nosync)"},
      {"*.photoslibrary", R"([^]*\.photoslibrary)"},
      {"*.tmp", R"([^]*\.tmp)"},
      {"~$*", R"(~\$[^]*)"},
  };
  for (const auto& [rule, expression] : rules) {
    if (fits(name, expression)) {
      return rule;
    }
  }
  return isFolder && fits(name, "tmp") ? "tmp" : "";
}

struct NaiveFault {
  GapKind kind;
  std::string rule;
};

std::vector<NaiveFault> faultsOf(const FakeTree& tree, const std::string& path, const std::string& name,
                                 bool isWithinPackage, bool isPackage, bool isHidden) {
  const bool isFolder = tree.isFolder(path);
  const bool isFile = tree.isFile(path);
  if (!isFolder && !isFile) {
    return {};
  }
  const std::optional<FakeValues> values = tree.valuesOf(path);
  if (!values) {
    return {{GapKind::stateUnknown, ""}};
  }
  std::vector<NaiveFault> faults;
  const bool isPending =
      values->isUbiquitousItem &&
      (values->isUploaded == false || values->uploadingError.has_value() || values->hasUnresolvedConflicts == true);
  if (isPending && (isPackage || isWithinPackage)) {
    faults.push_back({GapKind::pendingPackage, ""});
  }
  if (isPending && isHidden) {
    faults.push_back({GapKind::pendingHidden, ""});
  }
  if (values->isSyncPaused == true) {
    faults.push_back({GapKind::syncPaused, ""});
  }
  const std::string rule = ruleFor(name, isFolder);
  if (values->isExcludedFromSync == true || (!values->isUbiquitousItem && !rule.empty())) {
    faults.push_back({GapKind::excluded, rule});
  }
  if (values->isUbiquitousItem && isFile && !values->isUploaded) {
    faults.push_back({GapKind::stateUnknown, ""});
  }
  if (!values->isUbiquitousItem && !isWithinPackage && (isFile || isPackage)) {
    faults.push_back({GapKind::notInICloud, ""});
  }
  return faults;
}

int rankOf(const std::string& rule) {
  static const std::vector<std::string> order = {"*.nosync", "*.photoslibrary", "*.tmp", "tmp", "~$*", ""};
  return static_cast<int>(std::ranges::find(order, rule) - order.begin());
}

class NaiveLook {
 public:
  NaiveLook(const FakeTree& tree, View& view) : tree_(tree), view_(view) {}

  /// `top`: the package or hidden folder that stands for all in the folder; empty where nothing does.
  void visit(const std::string& folder, const std::string& real, const std::string& top, bool isPackage) {
    const std::vector<std::string> names = tree_.listedNames(real);
    for (const std::string& name : names) {
      const std::string path = folder + "/" + name;
      const std::string there = real + "/" + name;
      const bool isFolder = tree_.isFolder(there);
      const bool isHiddenName = name.starts_with('.');
      if (!isFolder && !isHiddenName && top.empty()) {
        ++view_.files;
      }
      if (name == ".Trash" || (!isFolder && isLeftAside(name))) {
        continue;
      }
      const bool isTopHidden = top.empty() && isHiddenName;
      const bool isTopPackage = top.empty() && !isHiddenName && isFolder && name.ends_with(".pages");
      const bool isHidden = isTopHidden || (!top.empty() && !isPackage);
      const bool isWithinPackage = !top.empty() && isPackage;
      const std::string standIn = !top.empty() ? top : path;
      if (isHidden || isTopPackage || isWithinPackage) {
        view_.seen[path] = isHidden ? 'h' : isTopPackage ? 'p' : 'i';
      }
      for (const NaiveFault& fault : faultsOf(tree_, there, name, isWithinPackage, isTopPackage, isHidden)) {
        add(standIn, fault, !top.empty() || isFolder, true);
      }
      if (isFolder) {
        visit(path, there, !top.empty() || isTopHidden || isTopPackage ? standIn : "", isWithinPackage || isTopPackage);
        if (!tree_.isListable(there)) {
          add(standIn, {GapKind::unreadableFolder, ""}, true,
              standIn != path || isTopHidden || isTopPackage || tree_.listedNames(there).empty());
        }
      }
    }
  }

 private:
  void add(const std::string& path, const NaiveFault& fault, bool isFolder, bool isStandIn) {
    const View::Found found{fault.kind, fault.rule, isFolder, isStandIn};
    const auto [place, isNew] = view_.gaps.try_emplace(path, found);
    const auto rank = [](const View::Found& gap) { return std::pair(gap.kind, rankOf(gap.rule)); };
    if (!isNew && rank(found) < rank(place->second)) {
      place->second = found;
    }
  }

  const FakeTree& tree_;
  View& view_;
};

}  // namespace

CoverageLook naiveCoverage(const FakeTree& tree, const CoverageRequest& request) {
  std::vector<View> views;
  CoverageLook look;
  for (const WatchFolder& folder : request.folders) {
    std::string path = folder.path;
    while (path.ends_with('/')) {
      path.pop_back();
    }
    const bool isKnown = std::ranges::find(views, path, &View::path) != views.end();
    if (isKnown || std::ranges::find(look.report.notExamined, path) != look.report.notExamined.end()) {
      continue;
    }
    View view;
    view.path = path;
    view.name = folder.name;
    const std::optional<std::string> real = tree.resolved(path);
    const bool isInDrive = path.find("/Library/Mobile Documents/com~apple~CloudDocs") != std::string::npos;
    if (isInDrive && real && tree.isFolder(*real)) {
      view.isExamined = tree.isListable(*real);
      NaiveLook(tree, view).visit(path, *real, "", false);
    }
    if (!view.isExamined) {
      look.report.notExamined.push_back(path);
    }
    if (isInDrive) {
      views.push_back(std::move(view));
    }
  }

  std::set<std::string> standIns;
  for (const View& view : views) {
    for (const auto& [path, found] : view.gaps) {
      if (found.isStandIn) {
        standIns.insert(path);
      }
    }
  }
  const auto isStoodFor = [&](const std::string& path) {
    return std::ranges::any_of(standIns, [&](const std::string& other) { return liesBelow(path, other); });
  };
  std::map<std::string, CoverageGap> gaps;
  for (const View& view : views) {
    for (const auto& [path, found] : view.gaps) {
      if (!isStoodFor(path)) {
        const auto rule = found.rule.empty() ? std::nullopt : std::optional(found.rule);
        gaps.try_emplace(path, CoverageGap{found.kind, path, view.name, found.isFolder, rule});
      }
    }
    if (view.isExamined) {
      look.fileCounts.push_back({view.path, view.files});
    }
  }
  for (const View& view : views) {
    const auto most = std::ranges::find(request.mostFiles, view.path, &FolderFileCount::path);
    const bool isLost =
        view.isExamined && most != request.mostFiles.end() && most->files >= 20 && view.files * 2 < most->files;
    if (isLost && !standIns.contains(view.path) && !isStoodFor(view.path)) {
      gaps[view.path] = {GapKind::filesLost, view.path, view.name, true,
                         "from " + std::to_string(most->files) + " files to " + std::to_string(view.files)};
    }
  }

  for (auto& [path, gap] : gaps) {
    const bool isKnown = std::ranges::any_of(request.acknowledged, [&](const std::string& known) {
      return gap.path == known || liesBelow(gap.path, known);
    });
    if (isKnown) {
      ++look.report.acknowledged;
    } else {
      look.report.gapCounts.add(gap.kind);
      look.report.gaps.push_back(gap);
    }
  }
  std::ranges::stable_sort(look.report.gaps, {}, &CoverageGap::kind);
  look.report.complete = look.report.gaps.empty() && look.report.notExamined.empty();
  if (look.report.gaps.size() > 500) {
    look.report.gaps.resize(500);
  }

  std::ranges::stable_sort(views, {}, [](const View& view) { return view.path.size(); });
  std::map<std::string, char> seen;
  for (const View& view : views) {
    // What an outer folder shows of a nested one counts as the outer one sees it.
    if (!seen.contains(view.path)) {
      seen.insert(view.seen.begin(), view.seen.end());
    }
  }
  for (const auto& [path, what] : seen) {
    ++(what == 'h'   ? look.report.examined.hidden
       : what == 'p' ? look.report.examined.packages
                     : look.report.examined.inPackages);
  }
  return look;
}

}  // namespace cirrovane::test
