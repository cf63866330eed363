#include "ui/PanelPlace.h"

#include <gtest/gtest.h>

namespace cirrovane::test {
namespace {

const QRect kScreen(0, 0, 1600, 1000);
const QSize kPanel(380, 300);

TEST(PanelPlace, iconAtTheTop_hasThePanelBelow) {
  EXPECT_EQ(panelPlace(QRect(800, 0, 24, 24), kPanel, kScreen), QPoint(811 - 190, 29));
}

TEST(PanelPlace, iconAtTheBottom_hasThePanelAbove) {
  EXPECT_EQ(panelPlace(QRect(800, 976, 24, 24), kPanel, kScreen), QPoint(811 - 190, 976 - 300 - 6));
}

TEST(PanelPlace, iconInACorner_keepsThePanelOnTheScreen) {
  for (const QPoint corner : {QPoint(0, 0), QPoint(1576, 0), QPoint(0, 976), QPoint(1576, 976)}) {
    const QRect placed(panelPlace(QRect(corner, QSize(24, 24)), kPanel, kScreen), kPanel);
    EXPECT_TRUE(kScreen.contains(placed)) << corner.x() << ' ' << corner.y();
  }
}

TEST(PanelPlace, noIcon_putsThePanelAtTheTopRight) {
  const QRect placed(panelPlace(QRect(), kPanel, kScreen), kPanel);
  EXPECT_EQ(placed.right(), kScreen.right());
  EXPECT_LT(placed.top(), 20);
}

TEST(PanelPlace, secondScreen_isWhereItsIconIs) {
  const QRect second(1600, 200, 1280, 800);
  const QRect placed(panelPlace(QRect(2850, 200, 24, 24), kPanel, second), kPanel);
  EXPECT_TRUE(second.contains(placed));
}

TEST(PanelClick, panelInSight_isTakenAway) {
  EXPECT_EQ(panelClick(true, std::nullopt), PanelClick::takesAway);
  EXPECT_EQ(panelClick(true, std::chrono::milliseconds(1)), PanelClick::takesAway);
}

TEST(PanelClick, panelOutOfSight_isShown) {
  EXPECT_EQ(panelClick(false, std::nullopt), PanelClick::shows);
  EXPECT_EQ(panelClick(false, std::chrono::seconds(1)), PanelClick::shows);
}

TEST(PanelClick, panelGoneByThePressItself_staysAway) {
  EXPECT_EQ(panelClick(false, std::chrono::milliseconds(80)), PanelClick::nothing);
}

}  // namespace
}  // namespace cirrovane::test
