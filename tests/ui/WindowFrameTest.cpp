#include "tests/support/FakeUserDefaults.h"
#include "ui/WindowFrame.h"

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

const QList<QRect> kTwoScreens = {QRect(0, 0, 1600, 1000), QRect(1600, 0, 1280, 800)};

TEST(WindowFrame, frame_stored_comesBack) {
  FakeUserDefaults defaults;
  EXPECT_EQ(storedWindowFrame(defaults), std::nullopt);
  storeWindowFrame(defaults, QRect(-20, 40, 900, 720));
  EXPECT_EQ(storedWindowFrame(defaults), QRect(-20, 40, 900, 720));
}

TEST(WindowFrame, frame_storedAsNonsense_isNone) {
  FakeUserDefaults defaults;
  for (const char* text : {"", "1 2 3", "a b c d", "0 0 0 0", "1 2 3 -4", "1 2 3 4 5"}) {
    static_cast<void>(defaults.set("mainWindowFrame", text));
    EXPECT_EQ(storedWindowFrame(defaults), std::nullopt) << text;
  }
}

TEST(WindowFrame, frameOnAScreen_staysWhereItIs) {
  EXPECT_EQ(fittedToScreens(QRect(1700, 20, 900, 700), kTwoScreens), QRect(1700, 20, 900, 700));
}

TEST(WindowFrame, frameOfAScreenThatIsGone_movesToOneThatIsThere) {
  const QRect fitted = fittedToScreens(QRect(4000, 3000, 900, 700), kTwoScreens);
  EXPECT_TRUE(kTwoScreens[0].contains(fitted) || kTwoScreens[1].contains(fitted));
  EXPECT_EQ(fitted.size(), QSize(900, 700));
}

TEST(WindowFrame, frameLargerThanTheScreen_becomesSmaller) {
  EXPECT_EQ(fittedToScreens(QRect(0, 0, 3000, 2000), {QRect(0, 0, 1600, 1000)}), QRect(0, 0, 1600, 1000));
}

}  // namespace
}  // namespace cirrovane::test
