#pragma once

#include "base/FileDescriptor.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ICloudAttribute.h"
#include "tests/support/TemporaryFolder.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include <nlohmann/json.hpp>

namespace cirrovane::test {

/// Path of the program under test.
inline const std::string kProgram = CIRROVANE_BIN_DIR "/cirrovanectl";

/// Runs the program to its end, its output no terminal.
ChildResult ctl(const std::vector<std::string>& arguments, const ChildOptions& options = {});

/// The same on a disk that is full: no file can be given a byte.
ChildResult ctlOnAFullDisk(const std::vector<std::string>& arguments);

/// The names in a folder, in byte order; none when there is no such folder.
std::vector<std::string> namesIn(const std::string& folder);

/// The one JSON document in a program's output; fails the test, and is null, when it is none.
nlohmann::json parsed(const std::string& text);

/// An object's keys, in byte order.
std::vector<std::string> keysOf(const nlohmann::json& object);

/// A folder that stands for a Mac's disk, with iCloud Drive in the home folder.
class MacTree {
 public:
  MacTree();

  const std::string& path() const { return root_.path(); }
  std::string operator/(const std::string& name) const { return root_ / name; }
  std::string iCloudDrive() const { return iCloudDrive_; }
  /// Adds a file below iCloud Drive, with the cloud state given as lines of key=value.
  std::string addFile(const std::string& name, const std::string& state = "") const;
  /// The folder where the program keeps what it remembers.
  std::string storeFolder() const { return root_ / "Users/demo/Library/Application Support/com.quillmere.Cirrovane"; }
  std::string storePath(const std::string& name) const { return storeFolder() + "/" + name; }

 private:
  TemporaryFolder root_{CIRROVANE_TEST_DIR};
  std::string iCloudDrive_;
};

/// The program while it runs. Killed at the end if it still does.
class RunningProgram {
 public:
  /// Starts it with these descriptors as standard output and standard error.
  RunningProgram(const std::vector<std::string>& arguments, int out, int err,
                 const std::map<std::string, std::string>& environment = {});
  /// The same with another program, by its path.
  RunningProgram(const std::string& program, const std::vector<std::string>& arguments, int out, int err,
                 const std::map<std::string, std::string>& environment = {});
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  void signal(int number) const;
  /// Waits for the end. Absent when a signal was the end.
  std::optional<int> exitStatus();

 private:
  pid_t process_ = -1;
};

/// A pseudo-terminal, for a program to write to and a test to read.
class Terminal {
 public:
  Terminal();

  /// For the program.
  int programEnd() const { return programEnd_.get(); }
  /// Makes it this many characters wide.
  void setColumns(unsigned short columns) const;
  /// To be called once the program has its copy, so that its end is the end of the text.
  void closeProgramEnd() { programEnd_ = FileDescriptor(); }
  /// Reads until the text has come; fails the test when the program ends first.
  void waitFor(std::string_view text);
  /// Everything that was shown, from the beginning to the program's end.
  std::string wholeText();

 private:
  bool readMore();

  FileDescriptor testEnd_;
  FileDescriptor programEnd_;
  std::string text_;
};

}  // namespace cirrovane::test
