#include "platform/macos/plain/SymbolPlacement.h"

#include <gtest/gtest.h>

namespace cirrovane {
namespace {

TEST(Fitted, wideDrawing_fillsTheWidthInTheMiddleOfTheHeight) {
  EXPECT_EQ(fitted(20, 10, 40, 40), (SymbolPlacement{0, 10, 40, 20}));
}

TEST(Fitted, tallDrawing_fillsTheHeightInTheMiddleOfTheWidth) {
  EXPECT_EQ(fitted(10, 40, 20, 20), (SymbolPlacement{7.5, 0, 5, 20}));
}

TEST(Fitted, drawingOfTheBoxesProportions_fillsIt) {
  EXPECT_EQ(fitted(16, 16, 32, 32), (SymbolPlacement{0, 0, 32, 32}));
}

TEST(Fitted, nothingToDrawOrNowhereToDrawIt_isEmpty) {
  EXPECT_EQ(fitted(0, 10, 20, 20), SymbolPlacement());
  EXPECT_EQ(fitted(10, 0, 20, 20), SymbolPlacement());
  EXPECT_EQ(fitted(10, 10, 0, 20), SymbolPlacement());
  EXPECT_EQ(fitted(10, 10, 20, -1), SymbolPlacement());
}

}  // namespace
}  // namespace cirrovane
