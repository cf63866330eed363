#include "stores/AcknowledgementStore.h"

#include "base/Path.h"

#include <algorithm>
#include <utility>

namespace cirrovane {
namespace {

/// Leaves those that hold at the time, in their order.
void tidy(std::vector<Acknowledgement>& acknowledgements, Time now) {
  std::erase_if(acknowledgements, [&](const Acknowledgement& one) { return one.expiresAt && *one.expiresAt <= now; });
  std::ranges::stable_sort(acknowledgements, {}, &Acknowledgement::path);
}

bool eraseOf(std::vector<Acknowledgement>& acknowledgements, const std::string& path) {
  return std::erase_if(acknowledgements, [&](const Acknowledgement& one) { return one.path == path; }) > 0;
}

}  // namespace

AcknowledgementStore::AcknowledgementStore(const FileSystem& fileSystem, const FileStorage& storage, const Clock& clock,
                                           std::optional<std::string> filePath)
    : clock_(clock),
      file_(fileSystem, storage,
            filePath ? std::move(*filePath) : defaultStoragePath(fileSystem, "acknowledged.json")) {}

std::vector<Acknowledgement> AcknowledgementStore::current() const {
  std::vector<Acknowledgement> acknowledgements = file_.read();
  tidy(acknowledgements, clock_.now());
  return acknowledgements;
}

std::optional<Failure> AcknowledgementStore::acknowledge(const std::vector<std::string>& paths,
                                                         std::optional<Time> expiresAt) const {
  return file_.change([&](std::vector<Acknowledgement>& acknowledgements) {
    const Time now = clock_.now();
    for (const std::string& argument : paths) {
      std::string path(withoutTrailingSlash(argument));
      eraseOf(acknowledgements, path);
      acknowledgements.push_back({std::move(path), now, expiresAt});
    }
    tidy(acknowledgements, now);
    return true;
  });
}

std::optional<Failure> AcknowledgementStore::forget(const std::vector<std::string>& paths) const {
  std::optional<Failure> unknown;
  const std::optional<Failure> failure = file_.change([&](std::vector<Acknowledgement>& acknowledgements) {
    tidy(acknowledgements, clock_.now());
    for (const std::string& argument : paths) {
      const std::string path(withoutTrailingSlash(argument));
      if (!eraseOf(acknowledgements, path)) {
        unknown = Failure{path + " is not acknowledged."};
        return false;
      }
    }
    return true;
  });
  return failure ? failure : unknown;
}

}  // namespace cirrovane
