#include "platform/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

TEST(QtClipboard, setText_replacesWhatWasCopied) {
  QtClipboard clipboard;
  clipboard.setText("first");
  clipboard.setText("/Users/demo/Größe ☁\nsecond line");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "/Users/demo/Größe ☁\nsecond line");
}

}  // namespace
}  // namespace cirrovane::test
