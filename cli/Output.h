#pragma once

#include "cli/ExitStatus.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace cirrovane {

/// Takes the terminal's last line back, where it can.
inline constexpr const char* kEraseLine = "\r\x1b[K";

/// One of the program's standard streams.
class Output {
 public:
  explicit Output(int descriptor);

  /// Whether text may be coloured: a terminal that knows colours, and a user who does not object (NO_COLOR).
  bool isColoured() const { return isColoured_; }
  bool isTerminal() const { return isTerminal_; }
  /// Whether a line can be taken back: a terminal that knows how.
  bool isErasable() const { return isErasable_; }
  /// The terminal's width in characters, as it is now; 80 where it does not tell.
  std::size_t columns() const;

  /// Writes at once. false when the stream takes no more; a reader that has gone away is no error of ours.
  bool write(std::string_view text);

  /// Whether something that the user should have got was lost: a full disk, say, not a closed pipe.
  bool hasLostText() const { return hasLostText_; }

 private:
  int descriptor_;
  bool isTerminal_;
  bool isErasable_;
  bool isColoured_;
  bool isClosed_ = false;
  bool hasLostText_ = false;
};

/// The status once the answer is written: one that did not arrive is none, which `err` is told.
ExitStatus statusAfterWriting(ExitStatus status, const Output& out, Output& err);

/// Keeps a closed pipe from ending the program before it has given its verdict.
void ignoreClosedPipes();

}  // namespace cirrovane
