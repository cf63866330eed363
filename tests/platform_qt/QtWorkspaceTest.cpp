#include "platform/qt/QtWorkspace.h"
#include "tests/platform_qt/URLReceiver.h"

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(QtWorkspace, openURL_opensTheAddressAsItIs) {
  const URLReceiver browser("https");
  QtWorkspace().openURL("https://www.icloud.com/iclouddrive?x=1&y=%20#top");
  EXPECT_THAT(browser.received(), ElementsAre("https://www.icloud.com/iclouddrive?x=1&y=%20#top"));
}

TEST(QtWorkspace, reveal_withARevealer_leavesTheItemToIt) {
  const URLReceiver folders("file");
  std::vector<std::string> revealed;
  QtWorkspace([&revealed](const std::string& path, const std::function<void()>&) {
    revealed.push_back(path);
  }).reveal("/Users/demo/a b.txt");
  EXPECT_THAT(revealed, ElementsAre("/Users/demo/a b.txt"));
  EXPECT_THAT(folders.received(), IsEmpty());
}

TEST(QtWorkspace, reveal_whenTheRevealerFailsLater_opensTheFolder) {
  const URLReceiver folders("file");
  std::function<void()> fail;
  {
    QtWorkspace workspace([&fail](const std::string&, std::function<void()> orElse) { fail = std::move(orElse); });
    workspace.reveal("/Users/demo/100% #1?/a.txt");
  }
  EXPECT_THAT(folders.received(), IsEmpty());
  fail();
  EXPECT_THAT(folders.received(), ElementsAre("file:///Users/demo/100%25%20%231%3F/"));
}

TEST(QtWorkspace, reveal_withoutARevealer_opensTheFolder) {
  const URLReceiver folders("file");
  QtWorkspace workspace;
  workspace.reveal("/Größe/a.txt");
  workspace.reveal("/a.txt");
  workspace.reveal("/bytes\xff/a.txt");
  EXPECT_THAT(folders.received(), ElementsAre("file:///Gr%C3%B6%C3%9Fe/", "file:///", "file:///bytes%FF/"));
}

TEST(FileURI, anyPath_keepsEveryByte) {
  EXPECT_EQ(fileURI("/"), "file:///");
  EXPECT_EQ(fileURI("/a/b.txt"), "file:///a/b.txt");
  EXPECT_EQ(fileURI("/a b%20/☁#?.txt"), "file:///a%20b%2520/%E2%98%81%23%3F.txt");
  EXPECT_EQ(fileURI("/\xff\n"), "file:///%FF%0A");
}

}  // namespace
}  // namespace cirrovane::test
