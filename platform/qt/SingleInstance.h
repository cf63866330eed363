#pragma once

#include <QFile>
#include <QLocalServer>
#include <chrono>
#include <functional>
#include <string>

class QLocalSocket;

namespace cirrovane {

/// Holds one user to one running application per Mac root: a later start hands what it wants to the first, and ends.
/// Main thread only; needs an application object.
class SingleInstance {
 public:
  /// How a start went.
  enum class Start {
    /// This process is the first, or nobody can tell, because the folder is of no use.
    first,
    /// Another process is the first, and it has received the message.
    received,
    /// Another process is the first, but it does not answer.
    unanswered,
  };

  /// For the Mac root at the path, by whatever spelling. The instances meet in `folder`, by default the one that the
  /// user's session has for such purposes.
  explicit SingleInstance(const std::string& root, const std::string& folder = {});

  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  /// Makes this process the first, or hands the message, one short line, to the one that is. Takes no longer than
  /// `patience`. To be called once.
  Start start(const std::string& message, std::chrono::milliseconds patience = std::chrono::seconds(2));

  /// What the first instance does with the messages of later ones, which wait until this is called.
  void onMessage(std::function<void(const std::string&)> handler);

 private:
  bool becomeFirst();
  void serveWaiting();
  void serve(QLocalSocket& socket);

  QString path_;
  /// Locked while this process is the first; the system unlocks it however the process ends.
  QFile lock_;
  QLocalServer server_;
  std::function<void(const std::string&)> handler_;
};

}  // namespace cirrovane
