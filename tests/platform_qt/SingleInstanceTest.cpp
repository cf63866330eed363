#include "platform/qt/SingleInstance.h"
#include "tests/platform_qt/EventLoop.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using Start = SingleInstance::Start;
using std::chrono_literals::operator""ms;
using testing::ElementsAre;

/// A start in a process of its own, which does not outlive the test.
class Probe {
 public:
  Probe(const QString& root, const QString& folder, const QString& message) {
    process_.start(CIRROVANE_BIN_DIR "/instance_probe", {root, folder, message});
    process_.waitForStarted();
  }
  ~Probe() { kill(); }

  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;

  /// The next line that it prints.
  std::string line() {
    handleEventsUntil([this] { return process_.canReadLine() || process_.state() == QProcess::NotRunning; });
    return process_.readLine().trimmed().toStdString();
  }
  /// Leaves it no time to do anything more, but keeps it alive.
  void stop() { ASSERT_EQ(::kill(static_cast<pid_t>(process_.processId()), SIGSTOP), 0); }
  void kill() {
    process_.kill();
    process_.waitForFinished();
  }

 private:
  QProcess process_;
};

/// The path of a socket is short, so the instances do not meet below the build folder.
class SingleInstanceTest : public testing::Test {
 protected:
  Probe startProbe(const std::string& message, const std::string& probedRoot) const {
    return {QString::fromStdString(probedRoot), meeting.path(), QString::fromStdString(message)};
  }
  Probe startProbe(const std::string& message) const { return startProbe(message, root.path()); }

  /// The path of the socket that the instances meet at.
  QString socketPath() const {
    const QStringList names = QDir(meeting.path()).entryList(QDir::System | QDir::NoDotAndDotDot);
    return names.size() == 1 ? meeting.filePath(names.front()) : QString();
  }

  TemporaryFolder root{CIRROVANE_TEST_DIR};
  QTemporaryDir meeting;
  SingleInstance instance{root.path(), meeting.path().toStdString()};
};

TEST_F(SingleInstanceTest, start_ofALaterInstance_handsItsMessageToTheFirst) {
  std::vector<std::string> messages;
  EXPECT_EQ(instance.start("raise"), Start::first);
  instance.onMessage([&messages](const std::string& message) { messages.push_back(message); });
  Probe second = startProbe("raise");
  EXPECT_EQ(second.line(), "received");
  Probe third = startProbe("panel");
  EXPECT_EQ(third.line(), "received");
  EXPECT_TRUE(handleEventsUntil([&messages] { return messages.size() == 2; }));
  EXPECT_THAT(messages, ElementsAre("raise", "panel"));
}

TEST_F(SingleInstanceTest, message_beforeThereIsAHandler_waits) {
  std::vector<std::string> messages;
  EXPECT_EQ(instance.start("raise"), Start::first);
  Probe second = startProbe("raise");
  const QString socket = socketPath();
  QLocalSocket early;
  early.connectToServer(socket);
  ASSERT_TRUE(early.waitForConnected());
  early.write("panel\n");
  handleEventsUntil([&early] { return early.bytesToWrite() == 0; });
  instance.onMessage([&messages](const std::string& message) { messages.push_back(message); });
  EXPECT_EQ(second.line(), "received");
  EXPECT_TRUE(handleEventsUntil([&messages] { return messages.size() == 2; }));
  EXPECT_THAT(messages, testing::UnorderedElementsAre("raise", "panel"));
}

TEST_F(SingleInstanceTest, start_forAnotherRoot_isAFirstToo) {
  EXPECT_EQ(instance.start("raise"), Start::first);
  const TemporaryFolder otherRoot(CIRROVANE_TEST_DIR);
  SingleInstance other(otherRoot.path(), meeting.path().toStdString());
  EXPECT_EQ(other.start("raise"), Start::first);
}

TEST_F(SingleInstanceTest, start_forTheSameRootByAnotherSpelling_isALaterInstance) {
  makeFolder(root / "a");
  std::filesystem::create_directory_symlink(root.path(), root / "link");
  EXPECT_EQ(instance.start("raise"), Start::first);
  instance.onMessage([](const std::string&) {});
  for (const char* spelling : {"", "a/..", "link"}) {
    EXPECT_EQ(startProbe("raise", root / spelling).line(), "received") << spelling;
  }
}

TEST_F(SingleInstanceTest, start_whenTheFirstIsStopped_endsInTime) {
  Probe first = startProbe("raise");
  ASSERT_EQ(first.line(), "first");
  first.stop();
  QElapsedTimer elapsed;
  elapsed.start();
  EXPECT_EQ(instance.start("raise", 300ms), Start::unanswered);
  EXPECT_GE(elapsed.elapsed(), 300);
  EXPECT_LT(elapsed.elapsed(), 20'000);
  first.kill();
}

TEST_F(SingleInstanceTest, start_whenTheFirstHasItsLockAndNoSocket_endsInTime) {
  EXPECT_EQ(instance.start("raise"), Start::first);
  ASSERT_TRUE(QFile::remove(socketPath()));
  SingleInstance second(root.path(), meeting.path().toStdString());
  EXPECT_EQ(second.start("raise", 50ms), Start::unanswered);
}

TEST_F(SingleInstanceTest, start_whenTheFirstWasKilled_takesItsPlace) {
  Probe first = startProbe("raise");
  ASSERT_EQ(first.line(), "first");
  first.kill();
  ASSERT_FALSE(socketPath().isEmpty());
  EXPECT_EQ(instance.start("raise"), Start::first);
  instance.onMessage([](const std::string&) {});
  EXPECT_EQ(startProbe("raise").line(), "received");
}

TEST_F(SingleInstanceTest, start_whenTheFirstHasEnded_takesItsPlace) {
  {
    SingleInstance first(root.path(), meeting.path().toStdString());
    EXPECT_EQ(first.start("raise"), Start::first);
  }
  EXPECT_EQ(instance.start("raise"), Start::first);
}

TEST_F(SingleInstanceTest, start_whenTheFirstIsKilledMeanwhile_takesItsPlace) {
  Probe first = startProbe("raise");
  ASSERT_EQ(first.line(), "first");
  first.stop();
  Probe second = startProbe("raise");
  first.kill();
  EXPECT_EQ(second.line(), "first");
}

TEST_F(SingleInstanceTest, start_ofManyAtOnce_makesOneTheFirst) {
  constexpr std::size_t kStarts = 8;
  std::vector<std::unique_ptr<Probe>> probes;
  for (std::size_t count = 0; count < kStarts; ++count) {
    probes.emplace_back(new Probe(startProbe("raise")));
  }
  std::vector<std::string> outcomes;
  for (const auto& probe : probes) {
    outcomes.push_back(probe->line());
  }
  EXPECT_EQ(std::ranges::count(outcomes, "first"), 1);
  EXPECT_EQ(std::ranges::count(outcomes, "received"), kStarts - 1);
}

TEST_F(SingleInstanceTest, socketAndLock_areTheUsersAlone) {
  EXPECT_EQ(instance.start("raise"), Start::first);
  const QStringList names = QDir(meeting.path()).entryList(QDir::System | QDir::Files);
  EXPECT_EQ(names.size(), 2);
  for (const QString& name : names) {
    struct stat status {};
    ASSERT_EQ(::stat(meeting.filePath(name).toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0077U, 0U) << name.toStdString();
  }
}

TEST_F(SingleInstanceTest, first_dropsAClientThatWritesNoMessage) {
  std::vector<std::string> messages;
  EXPECT_EQ(instance.start("raise"), Start::first);
  instance.onMessage([&messages](const std::string& message) { messages.push_back(message); });
  QLocalSocket rude;
  rude.connectToServer(socketPath());
  ASSERT_TRUE(rude.waitForConnected());
  rude.write(QByteArray(1'000'000, 'x'));
  EXPECT_TRUE(handleEventsUntil([&rude] { return rude.state() == QLocalSocket::UnconnectedState; }));
  EXPECT_EQ(startProbe("raise").line(), "received");
  EXPECT_TRUE(handleEventsUntil([&messages] { return !messages.empty(); }));
  EXPECT_THAT(messages, ElementsAre("raise"));
}

TEST_F(SingleInstanceTest, start_inAFolderOfNoUse_isAFirst) {
  SingleInstance other(root.path(), root / "missing");
  EXPECT_EQ(other.start("raise"), Start::first);
}

}  // namespace
}  // namespace cirrovane::test
