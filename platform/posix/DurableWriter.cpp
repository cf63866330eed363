#include "platform/posix/DurableWriter.h"

#include "base/Path.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <random>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

namespace cirrovane {
namespace {

// Nobody else's files begin and end so.
constexpr std::string_view kTemporaryPrefix = ".cirrovane-";
constexpr std::string_view kTemporarySuffix = ".tmp";
constexpr int kMostAttempts = 16;
constexpr mode_t kPrivateMode = 0600;
constexpr mode_t kUsualMode = 0666;

/// The error that errno holds, as one sentence about the file.
Failure failureOf(const std::string& path, int error) {
  const std::string name(lastPathComponent(path));
  return {"\u201C" + name + "\u201D could not be written: " + std::strerror(error) + "."};
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) {
    return ".";
  }
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool isTemporaryName(std::string_view name) {
  return name.size() > kTemporaryPrefix.size() + kTemporarySuffix.size() && name.starts_with(kTemporaryPrefix) &&
         name.ends_with(kTemporarySuffix);
}

std::string makeTemporaryName(std::random_device& random) {
  static constexpr std::string_view kDigits = "0123456789abcdef";
  std::string name(kTemporaryPrefix);
  for (int word = 0; word < 2; ++word) {
    std::uint32_t bits = random();
    for (int digit = 0; digit < 8; ++digit, bits >>= 4U) {
      name += kDigits[bits & 0x0FU];
    }
  }
  name += kTemporarySuffix;
  return name;
}

/// An open file that is closed by the same calls that opened it.
class OpenFile {
 public:
  OpenFile(const FileCalls& calls, int descriptor) : calls_(&calls), descriptor_(descriptor) {}
  OpenFile(OpenFile&& other) noexcept : calls_(other.calls_), descriptor_(std::exchange(other.descriptor_, -1)) {}
  OpenFile& operator=(OpenFile&&) = delete;
  ~OpenFile() { close(); }

  bool isOpen() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }
  bool close() { return descriptor_ < 0 || calls_->close(std::exchange(descriptor_, -1)) == 0; }

 private:
  const FileCalls* calls_;
  int descriptor_;
};

std::vector<std::string> temporaryNamesIn(int folder) {
  std::vector<std::string> names;
  const int copy = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (copy < 0) {
    return names;
  }
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(copy), ::closedir);
  if (!listing) {
    ::close(copy);
    return names;
  }
  while (const dirent* entry = ::readdir(listing.get())) {
    if (isTemporaryName(entry->d_name)) {
      names.emplace_back(entry->d_name);
    }
  }
  return names;
}

/// A temporary file is locked for as long as its writer lives, so one that can be locked has no writer any more.
void removeAbandoned(const FileCalls& calls, int folder) {
  for (const std::string& name : temporaryNamesIn(folder)) {
    const OpenFile file(calls, calls.openAt(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0));
    struct stat status {};
    if (file.isOpen() && calls.status(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        calls.lock(file.get()) == 0) {
      calls.unlinkAt(folder, name.c_str());
    }
  }
}

struct TemporaryFile {
  std::string name;
  OpenFile file;
};

/// Makes a temporary file that is this process's alone. Absent, with errno set, when that cannot be done.
std::optional<TemporaryFile> makeTemporary(const FileCalls& calls, int folder, mode_t mode) {
  std::random_device random;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::string name = makeTemporaryName(random);
    OpenFile file(calls,
                  calls.openAt(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!file.isOpen()) {
      if (errno == EEXIST || errno == EINTR) {
        continue;
      }
      return std::nullopt;
    }
    // Between its birth and its lock another process may have taken the file for an abandoned one, and removed it. A
    // file system without locks has nobody who would.
    if (calls.lock(file.get()) != 0 && (errno == EWOULDBLOCK || errno == EINTR)) {
      calls.unlinkAt(folder, name.c_str());
      continue;
    }
    struct stat status {};
    if (calls.status(file.get(), &status) != 0) {
      const int error = errno;
      calls.unlinkAt(folder, name.c_str());
      errno = error;
      return std::nullopt;
    }
    if (status.st_nlink > 0) {
      return TemporaryFile{std::move(name), std::move(file)};
    }
  }
  errno = EAGAIN;
  return std::nullopt;
}

/// Makes a system call again for as long as a signal interrupts it.
template <class Call>
int uninterrupted(const Call& call) {
  int result = -1;
  do {
    result = call();
  } while (result < 0 && errno == EINTR);
  return result;
}

bool writeAll(const FileCalls& calls, int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = calls.write(file, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0) {
      errno = ENOSPC;
      return false;
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

bool syncWhole(const FileCalls& calls, int file) {
  return uninterrupted([&] { return calls.sync(file); }) == 0;
}

/// Some file systems have no notion of syncing a folder, and say so.
bool syncFolder(const FileCalls& calls, int folder) {
  return syncWhole(calls, folder) || errno == EINVAL || errno == ENOTSUP;
}

/// Fills the temporary file and closes it; errno tells what failed.
bool fill(const FileCalls& calls, OpenFile& file, const ByteProducer& produce) {
  int error = 0;
  const bool isComplete = produce([&](std::string_view bytes) {
    if (error == 0 && !writeAll(calls, file.get(), bytes)) {
      error = errno;
    }
    return error == 0;
  });
  if (error == 0 && !isComplete) {
    error = ECANCELED;
  }
  if (error == 0 && !syncWhole(calls, file.get())) {
    error = errno;
  }
  if (!file.close() && error == 0 && errno != EINTR) {
    error = errno;
  }
  errno = error;
  return error == 0;
}

/// Why no file can take the place of what has the name now; 0 when one can. A rename would put it in place of a device
/// or a pipe too, as little as that was meant.
int obstacleAt(int folder, const std::string& name) {
  struct stat status {};
  if (::fstatat(folder, name.c_str(), &status, 0) != 0 || S_ISREG(status.st_mode)) {
    return 0;
  }
  return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

}  // namespace

std::optional<Failure> writeDurably(const FileCalls& calls, const std::string& path, FileAccess access,
                                    const ByteProducer& produce) {
  const OpenFile folder(calls, uninterrupted([&] {
                          return calls.openAt(AT_FDCWD, folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
                        }));
  if (!folder.isOpen()) {
    return failureOf(path, errno);
  }
  removeAbandoned(calls, folder.get());
  const std::string target(lastPathComponent(path));
  if (const int error = obstacleAt(folder.get(), target)) {
    return failureOf(path, error);
  }

  std::optional<TemporaryFile> temporary =
      makeTemporary(calls, folder.get(), access == FileAccess::privateToUser ? kPrivateMode : kUsualMode);
  if (!temporary) {
    return failureOf(path, errno);
  }
  // Closing a file can report a late failure, so it is closed before the rename; this second descriptor keeps the lock.
  const OpenFile lockHolder(calls, calls.duplicate(temporary->file.get()));
  const auto fail = [&](int error) {
    calls.unlinkAt(folder.get(), temporary->name.c_str());
    return failureOf(path, error);
  };
  if (!lockHolder.isOpen() || !fill(calls, temporary->file, produce)) {
    return fail(errno);
  }
  if (uninterrupted([&] { return calls.renameAt(folder.get(), temporary->name.c_str(), target.c_str()); }) != 0) {
    return fail(errno);
  }
  if (!syncFolder(calls, folder.get())) {
    return failureOf(path, errno);
  }
  return std::nullopt;
}

}  // namespace cirrovane
