#include "tests/demo/DemoMacFixture.h"

#include <array>
#include <filesystem>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace cirrovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int kNoMount = 77;

struct stat statusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

}  // namespace

std::optional<std::string> iCloudAttribute(const std::string& path) {
  std::array<char, 65536> buffer{};
  const ssize_t length = lgetxattr(path.c_str(), "user.icloud", buffer.data(), buffer.size());
  return length < 0 ? std::nullopt : std::optional(std::string(buffer.data(), static_cast<std::size_t>(length)));
}

TreeContent treeContent(const std::string& folder) {
  TreeContent content;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const std::string path = entry.path();
    content[path.substr(folder.size())] = {entry.is_regular_file() ? readFile(path) : "", iCloudAttribute(path)};
  }
  return content;
}

double modifiedAt(const std::string& path) {
  const struct stat status = statusOf(path);
  return static_cast<double>(status.st_mtim.tv_sec) + static_cast<double>(status.st_mtim.tv_nsec) / 1e9;
}

bool exists(const std::string& path) {
  return fs::exists(fs::symlink_status(path));
}

unsigned permissions(const std::string& path) {
  return statusOf(path).st_mode & 07777;
}

std::vector<std::string> pathsOf(const nlohmann::json& watchlist) {
  std::vector<std::string> paths;
  for (const nlohmann::json& folder : watchlist) {
    paths.push_back(folder.at("path"));
  }
  return paths;
}

std::set<std::string> reasonsOf(const nlohmann::json& report) {
  std::set<std::string> reasons;
  for (const nlohmann::json& blocker : report.at("blockers")) {
    reasons.insert(blocker.at("reason"));
  }
  return reasons;
}

std::string DemoMacTest::watchlistFile() const {
  return home() + "/Library/Application Support/com.quillmere.Cirrovane/watchlist.json";
}

ChildResult DemoMacTest::demo(const std::vector<std::string>& arguments, const ChildOptions& options) const {
  return runProgram(CIRROVANE_BIN_DIR "/cirrovane-demo-mac", arguments, options);
}

ChildResult DemoMacTest::succeed(const std::string& command) const {
  ChildResult result = demo({command, root()});
  EXPECT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_EQ(result.err, "");
  return result;
}

ChildResult DemoMacTest::onMac(const std::string& path, const std::vector<std::string>& arguments,
                               ChildOptions options) const {
  options.environment.try_emplace("PATH", "/usr/bin:/bin:/usr/sbin:/sbin");
  return runProgram(root() + path, arguments, options);
}

ChildResult DemoMacTest::check(const std::vector<std::string>& folders) const {
  std::vector<std::string> arguments = {"--mac-root", root(), "check", "--json"};
  arguments.insert(arguments.end(), folders.begin(), folders.end());
  return runProgram(CIRROVANE_BIN_DIR "/cirrovanectl", arguments);
}

nlohmann::json DemoMacTest::report(const std::vector<std::string>& folders) const {
  return nlohmann::json::parse(check(folders).out);
}

std::optional<ChildResult> DemoMacTest::demoOnMount(const std::string& mountArguments, const std::string& folder,
                                                    const std::string& script) const {
  makeFolder(folder);
  ChildResult result = runProgram("/usr/bin/unshare", {"--mount", "--map-root-user", "/bin/sh", "-c",
                                                       "mount " + mountArguments + " none \"$1\" || exit 77\n" + script,
                                                       CIRROVANE_BIN_DIR "/cirrovane-demo-mac", folder});
  // unshare itself gives 1 when it is not allowed, and is not there everywhere.
  if (result.exitStatus == kNoMount || result.exitStatus == 127 || result.err.starts_with("unshare:")) {
    return std::nullopt;
  }
  return result;
}

}  // namespace cirrovane::test
