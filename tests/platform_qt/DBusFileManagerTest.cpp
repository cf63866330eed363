#include "platform/qt/DBusFileManager.h"
#include "tests/platform_qt/EventLoop.h"
#include "tests/platform_qt/FakeService.h"
#include "tests/platform_qt/PrivateBus.h"
#include "tests/platform_qt/URLReceiver.h"

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const char* const kFileManager = "org.freedesktop.FileManager1";

class DBusFileManager : public testing::Test {
 protected:
  PrivateBus bus;
  URLReceiver folders{"file"};
};

TEST_F(DBusFileManager, reveal_asksForTheItemByItsURI) {
  bool hasOtherwise = false;
  const FakeService fileManager(bus.desktop(), kFileManager, [](const QDBusMessage&) { return QVariantList(); });
  const ItemRevealer reveal = makeDBusItemRevealer(bus.connection());
  reveal("/Users/demo/Größe 100%/☁ #1.txt", [&] { hasOtherwise = true; });
  reveal("/bytes\xff", [&] { hasOtherwise = true; });
  ASSERT_TRUE(handleEventsUntil([&] { return fileManager.calls("ShowItems").size() == 2; }));
  const QDBusMessage call = fileManager.calls("ShowItems").front();
  EXPECT_EQ(call.path(), "/org/freedesktop/FileManager1");
  EXPECT_EQ(call.signature(), "ass");
  EXPECT_EQ(call.arguments().value(0).toStringList(),
            QStringList("file:///Users/demo/Gr%C3%B6%C3%9Fe%20100%25/%E2%98%81%20%231.txt"));
  EXPECT_EQ(call.arguments().value(1).toString(), "");
  EXPECT_EQ(fileManager.calls("ShowItems").back().arguments().value(0).toStringList(), QStringList("file:///bytes%FF"));
  handleEvents();
  EXPECT_FALSE(hasOtherwise);
}

TEST_F(DBusFileManager, reveal_withoutAFileManager_opensTheFolderLater) {
  QtWorkspace workspace(makeDBusItemRevealer(bus.connection()));
  workspace.reveal("/Users/demo/a b/c.txt");
  EXPECT_THAT(folders.received(), IsEmpty());
  EXPECT_TRUE(handleEventsUntil([this] { return !folders.received().empty(); }));
  EXPECT_THAT(folders.received(), ElementsAre("file:///Users/demo/a%20b/"));
}

TEST_F(DBusFileManager, reveal_withoutABus_opensTheFolderLater) {
  QtWorkspace workspace(makeDBusItemRevealer(QDBusConnection("none")));
  workspace.reveal("/Users/demo/c.txt");
  EXPECT_THAT(folders.received(), IsEmpty());
  EXPECT_TRUE(handleEventsUntil([this] { return !folders.received().empty(); }));
  EXPECT_THAT(folders.received(), ElementsAre("file:///Users/demo/"));
}

}  // namespace
}  // namespace cirrovane::test
