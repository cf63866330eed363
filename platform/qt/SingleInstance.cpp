#include "platform/qt/SingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <array>
#include <climits>
#include <cstddef>
#include <filesystem>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace cirrovane {
namespace {

const char* const kReceived = "received\n";
constexpr qint64 kLongestMessage = 64;
/// Between two looks at a first instance that has its lock and not yet its socket.
constexpr unsigned long kPauseMilliseconds = 10;

/// The folder that only this user may enter; empty when there is none.
QString usualFolder() {
#ifdef Q_OS_MACOS
  // The system cleans the temporary folder of what nobody has used for days, and a lock is used by nobody. This one
  // lies beside it, is left alone, and its path is short enough for a socket.
  std::array<char, PATH_MAX> folder{};
  const std::size_t size = ::confstr(_CS_DARWIN_USER_DIR, folder.data(), folder.size());
  return size > 0 && size <= folder.size() ? QString::fromUtf8(folder.data()) : QString();
#else
  return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
#endif
}

/// The same for all spellings of one root, and short enough for the path of a socket.
QString nameFor(const std::string& root) {
  std::error_code error;
  const std::filesystem::path canonical = std::filesystem::canonical(root, error);
  const QByteArray bytes = QByteArray::fromStdString(error ? root : canonical.string());
  const QByteArray hash = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(16);
  return QString("cirrovane-%1-%2").arg(::getuid()).arg(QString::fromLatin1(hash));
}

int remaining(const QDeadlineTimer& deadline) {
  return static_cast<int>(deadline.remainingTime());
}

/// Whether somebody behind the socket has received the message.
bool deliver(const QString& path, const QByteArray& message, const QDeadlineTimer& deadline) {
  QLocalSocket socket;
  socket.connectToServer(path);
  if (!socket.waitForConnected(remaining(deadline))) {
    return false;
  }
  socket.write(message + '\n');
  while (!socket.canReadLine()) {
    if (!socket.waitForReadyRead(remaining(deadline))) {
      return false;
    }
  }
  return socket.readLine() == kReceived;
}

}  // namespace

SingleInstance::SingleInstance(const std::string& root, const std::string& folder) {
  const QString place = folder.empty() ? usualFolder() : QString::fromStdString(folder);
  if (!place.isEmpty()) {
    path_ = place + '/' + nameFor(root);
    lock_.setFileName(path_ + ".lock");
  }
  server_.setSocketOptions(QLocalServer::UserAccessOption);
}

SingleInstance::Start SingleInstance::start(const std::string& message, std::chrono::milliseconds patience) {
  const QDeadlineTimer deadline(patience);
  // Kept for good: a lock file that goes while another start opens it would let both be the first.
  if (path_.isEmpty() || !lock_.open(QIODevice::ReadWrite, QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
    return Start::first;
  }
  do {
    if (becomeFirst()) {
      return Start::first;
    }
    if (deliver(path_, QByteArray::fromStdString(message), deadline)) {
      return Start::received;
    }
    QThread::msleep(kPauseMilliseconds);
  } while (!deadline.hasExpired());
  return Start::unanswered;
}

bool SingleInstance::becomeFirst() {
  // Not QLockFile, which goes by process numbers: one that is in use again would keep a dead instance's lock alive.
  if (::flock(lock_.handle(), LOCK_EX | LOCK_NB) != 0) {
    return false;
  }
  // Whoever made a socket of this name is gone, or it would have the lock.
  QLocalServer::removeServer(path_);
  server_.listen(path_);
  return true;
}

void SingleInstance::onMessage(std::function<void(const std::string&)> handler) {
  handler_ = std::move(handler);
  QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { serveWaiting(); });
  serveWaiting();
}

void SingleInstance::serveWaiting() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    socket->setReadBufferSize(kLongestMessage);
    QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QObject::connect(socket, &QLocalSocket::readyRead, &server_, [this, socket] { serve(*socket); });
    serve(*socket);
  }
}

void SingleInstance::serve(QLocalSocket& socket) {
  if (!socket.canReadLine()) {
    if (socket.bytesAvailable() >= kLongestMessage) {
      socket.abort();
    }
    return;
  }
  const std::string message = socket.readLine().trimmed().toStdString();
  // Before the handler, which may keep the event loop to itself.
  socket.write(kReceived);
  socket.flush();
  socket.disconnectFromServer();
  handler_(message);
}

}  // namespace cirrovane
